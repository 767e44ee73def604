// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <limits>
#include <string>
#include <vector>

namespace plovik {

/// Commands of git as text. Secrets are masked in all of it.

/// What runs the same command when it is pasted into a shell, wherever that is: quoted for sh.
std::string shellLine(const std::filesystem::path& directory, const std::vector<std::string>& arguments);

/// "git -c … fetch --all", whole and quoted for sh.
std::string gitLine(const std::vector<std::string>& arguments);

/// "git fetch --all": for reading, so without what every command is told. Stops soon after `mostBytes`.
std::string shownCommand(const std::vector<std::string>& arguments,
                         std::size_t mostBytes = std::numeric_limits<std::size_t>::max());

/// Whether a command only looks: it changes no file, no ref and no remote.
bool isRead(const std::vector<std::string>& arguments);

} // namespace plovik
