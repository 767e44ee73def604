// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include "cli/ShownName.h"

#include <QCoreApplication>

#include <string_view>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(plovik::CommandLine)
};

QString usage()
{
    const QString lines = Texts::tr("Usage: plovik [--] [FOLDER...]\n\n"
                                    "Opens the repository of each FOLDER in Plovik, the current folder's without.\n"
                                    "A file opens the repository that it lies in.");
    const QString help = Texts::tr("print this and quit");
    const QString version = Texts::tr("print the version and quit");
    return u"%1\n\n  --help      %2\n  --version   %3\n"_s.arg(lines, help, version);
}

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
            return CommandAnswer{usage().toStdString(), 0};
        else if (argument == "--version")
            return CommandAnswer{"plovik " PLOVIK_VERSION "\n", 0};
        else
            return CommandAnswer{"plovik: " +
                                     Texts::tr("There is no option “%1”; see “plovik --help”.")
                                         .arg(QString::fromStdString(shownName(argument)))
                                         .toStdString() +
                                     "\n",
                                 2};
    }
    if (command.folders.empty())
        command.folders.emplace_back(".");
    return command;
}

} // namespace plovik
