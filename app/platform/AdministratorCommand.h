// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace plovik {

/// A command was not run as the administrator, or failed when it was. what() is what the system said of it, ready to be
/// shown; empty when it said nothing.
struct AdministratorFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Runs a program (the first of `command`, absolute, with its arguments as bytes) with the administrator's rights; the
/// desktop asks for the password. False when the user dismissed that, and then nothing was run. Throws
/// AdministratorFailure. Blocks until the command has ended, however long the user takes; any thread but the main one.
bool runAsAdministrator(const std::vector<std::string>& command);

/// `text` as one word of a POSIX shell's command, whatever it holds.
std::string shellQuoted(std::string_view text);

} // namespace plovik
