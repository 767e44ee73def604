// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <limits>
#include <string>
#include <vector>

namespace plovik {

/// Commands of git as text. Secrets are masked in all of it.

/// Returns a line that runs the same command when it is pasted into a shell in any folder, quoted for sh.
std::string shellLine(const std::filesystem::path& directory, const std::vector<std::string>& arguments);

/// Returns the whole command, "git -c … fetch --all", quoted for sh.
std::string gitLine(const std::vector<std::string>& arguments);

/// Returns the command for reading, "git fetch --all", without the options that every command gets. Stops soon after
/// `mostBytes`.
std::string shownCommand(const std::vector<std::string>& arguments,
                         std::size_t mostBytes = std::numeric_limits<std::size_t>::max());

/// Returns whether a command only reads: it changes no file, no ref and no remote.
bool isRead(const std::vector<std::string>& arguments);

} // namespace plovik
