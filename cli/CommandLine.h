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

/// What to clone, as it was typed.
struct CloneCommand {
    std::string address;
    std::string folder = {}; ///< empty for a new one in the current folder, named after the address
};

/// Where to make a new repository, as it was typed.
struct InitCommand {
    std::string folder;
};

/// The result of a command line that opens nothing: what to print, and the exit status.
struct CommandAnswer {
    std::string text;
    int status = 0; ///< the text goes to standard output for 0, otherwise to standard error
};

using CommandLine = std::variant<OpenCommand, CloneCommand, InitCommand, CommandAnswer>;

/// Reads the arguments after the program's name. The current folder is opened when none is named. "clone" and "init" are
/// verbs where they come first, and names of folders elsewhere.
CommandLine parseCommandLine(std::span<char* const> arguments);

} // namespace plovik
