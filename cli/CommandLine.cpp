// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include "cli/ShownName.h"

#include <string_view>

namespace plovik {

namespace {

constexpr std::string_view usage =
    R"(Usage: plovik [--] [FOLDER...]

Opens the repository of each FOLDER in Plovik, the current folder's without.
A file opens the repository that it lies in.

  --help      print this and quit
  --version   print the version and quit
)";

} // namespace

std::variant<OpenCommand, CommandAnswer> parseCommandLine(std::span<char* const> arguments)
{
    OpenCommand command;
    bool onlyFolders = false;
    for (const std::string_view argument : arguments) {
        // A single dash is an ordinary name.
        if (onlyFolders || argument == "-" || !argument.starts_with('-'))
            command.folders.emplace_back(argument);
        else if (argument == "--")
            onlyFolders = true;
        else if (argument == "--help")
            return CommandAnswer{std::string(usage), 0};
        else if (argument == "--version")
            return CommandAnswer{"plovik " PLOVIK_VERSION "\n", 0};
        else
            return CommandAnswer{"plovik: There is no option “" + shownName(argument) + "”; see “plovik --help”.\n", 2};
    }
    if (command.folders.empty())
        command.folders.emplace_back(".");
    return command;
}

} // namespace plovik
