// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace plovik {

/// A command could not be run as the administrator, or failed. what() holds the system's own words, ready to be shown;
/// it is empty when the system gave no reason.
struct AdministratorFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Runs a program with the administrator's rights; the desktop asks for the password. `command` is the program's
/// absolute path and its arguments, all as bytes. Returns false when the user dismissed the question, and then nothing
/// was run. Throws AdministratorFailure. Blocks until the command has ended; never call it on the main thread.
bool runAsAdministrator(const std::vector<std::string>& command);

/// Returns any text as one word of a POSIX shell's command.
std::string shellQuoted(std::string_view text);

} // namespace plovik
