// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/translations/Translations.h"
#include "cli/Application.h"
#include "cli/CommandLine.h"
#include "cli/RepositoryFolder.h"

#include <QCoreApplication>

#include <cstdio>
#include <filesystem>
#include <vector>

namespace {

void complain(const char* sentence) { std::fprintf(stderr, "plovik: %s\n", sentence); }

int print(const plovik::CommandAnswer& answer)
{
    std::FILE* const stream = answer.status == 0 ? stdout : stderr;
    const bool written = std::fputs(answer.text.c_str(), stream) >= 0 && std::fflush(stream) == 0;
    return written ? answer.status : 1;
}

/// Opens the folders that can be opened, and prints why for each of the others.
int open(const plovik::OpenCommand& command)
{
    int status = 0;
    std::vector<std::filesystem::path> folders;
    for (const auto& name : command.folders) {
        try {
            folders.push_back(plovik::repositoryFolder(name));
        } catch (const plovik::UnopenableFolder& failure) {
            complain(failure.what());
            status = 1;
        }
    }
    if (!folders.empty())
        plovik::openInApplication(folders);
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    // What the toolkit warns of, such as an old locale, does not concern the user of a terminal.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    int ownArgument = 1;
    const QCoreApplication translatable(ownArgument, argv);
    plovik::installTranslations();

    const auto parsed = plovik::parseCommandLine({argv + 1, argv + argc});
    if (const auto* const answer = std::get_if<plovik::CommandAnswer>(&parsed))
        return print(*answer);
    try {
        return open(std::get<plovik::OpenCommand>(parsed));
    } catch (const std::exception& failure) {
        complain(failure.what());
        return 1;
    }
}
