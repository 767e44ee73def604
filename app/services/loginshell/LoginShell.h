// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <stop_token>
#include <string>

/// The user's login shell, which knows where programs are that a desktop's menu does not: hooks and filters need them.
namespace plovik::loginShell {

/// Returns the PATH that a shell has when the user logs in with it; nullopt when it does not say so before a stop is requested.
/// Blocks; any thread.
std::optional<std::string> searchPath(const std::filesystem::path& shell, std::stop_token stop);

/// When the application was started without a terminal, as from a menu: reads that PATH once, beside everything else, and has
/// git's programs use it from then on. A shell that takes more than two seconds is given up. Main thread.
void beginReadingSearchPath();

} // namespace plovik::loginShell
