// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>
#include <variant>
#include <vector>

namespace plovik {

/// What is to be opened, as it was typed.
struct OpenCommand {
    std::vector<std::string> folders; ///< never empty
};

/// A command line that ends at once: what to print, and the exit status.
struct CommandAnswer {
    std::string text;
    int status = 0; ///< 0 goes to standard output, everything else to standard error
};

/// Reads the arguments after the program's name. Without a folder the current one is meant.
std::variant<OpenCommand, CommandAnswer> parseCommandLine(std::span<char* const> arguments);

} // namespace plovik
