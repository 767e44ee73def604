// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>
#include <variant>
#include <vector>

namespace plovik {

/// The folders to open, as they were typed.
struct OpenCommand {
    std::vector<std::string> folders; ///< never empty
};

/// The result of a command line that opens nothing: what to print, and the exit status.
struct CommandAnswer {
    std::string text;
    int status = 0; ///< the text goes to standard output for 0, otherwise to standard error
};

/// Reads the arguments after the program's name. The current folder is opened when none is named.
std::variant<OpenCommand, CommandAnswer> parseCommandLine(std::span<char* const> arguments);

} // namespace plovik
