// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include "cli/ShownName.h"

#include <QCoreApplication>

#include <string_view>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(plovik::CommandLine)
};

QString usage()
{
    const QString lines = Texts::tr("Usage: plovik [--] [FOLDER...]\n"
                                    "       plovik clone [--] ADDRESS [FOLDER]\n"
                                    "       plovik init [--] [FOLDER]\n\n"
                                    "Opens the repository of each FOLDER in Plovik, the current folder's without.\n"
                                    "A file opens the repository that it lies in.\n\n"
                                    "“clone” clones into a new FOLDER, and “init” makes a repository in FOLDER or in\n"
                                    "the current folder; Plovik shows how it goes, and opens it. A folder of one of\n"
                                    "these names is opened as ./clone or ./init.");
    const QString help = Texts::tr("print this and quit");
    const QString version = Texts::tr("print the version and quit");
    return u"%1\n\n  --help      %2\n  --version   %3\n"_s.arg(lines, help, version);
}

CommandAnswer misused(const QString& sentence) { return {"plovik: " + sentence.toStdString() + "\n", 2}; }

CommandLine verbCommand(std::string_view verb, const std::vector<std::string>& names)
{
    if (verb == "init") {
        if (names.size() > 1)
            return misused(Texts::tr("“init” takes one folder; see “plovik --help”."));
        return InitCommand{names.empty() ? "." : names.front()};
    }
    if (names.empty() || names.size() > 2 || names.front().empty())
        return misused(Texts::tr("“clone” takes an address and a folder; see “plovik --help”."));
    return CloneCommand{names.front(), names.size() == 2 ? names.back() : std::string()};
}

} // namespace

CommandLine parseCommandLine(std::span<char* const> arguments)
{
    const std::string_view first = arguments.empty() ? std::string_view() : arguments.front();
    const std::string_view verb = first == "clone" || first == "init" ? first : std::string_view();
    std::vector<std::string> names;
    bool onlyNames = false;
    for (const std::string_view argument : arguments.subspan(verb.empty() ? 0 : 1)) {
        // A single dash is an ordinary name.
        if (onlyNames || argument == "-" || !argument.starts_with('-'))
            names.emplace_back(argument);
        else if (argument == "--")
            onlyNames = true;
        else if (argument == "--help")
            return CommandAnswer{usage().toStdString(), 0};
        else if (argument == "--version")
            return CommandAnswer{"plovik " PLOVIK_VERSION "\n", 0};
        else
            return misused(Texts::tr("There is no option “%1”; see “plovik --help”.")
                               .arg(QString::fromStdString(shownName(argument))));
    }
    if (!verb.empty())
        return verbCommand(verb, names);
    if (names.empty())
        names.emplace_back(".");
    return OpenCommand{std::move(names)};
}

} // namespace plovik
