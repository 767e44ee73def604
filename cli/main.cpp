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

int clone(const plovik::CloneCommand& command)
{
    const std::string address = plovik::addressFromAnywhere(command.address);
    const std::filesystem::path folder = plovik::folderForClone(address, command.folder);
    plovik::openInApplication({&folder, 1}, {"clone-repository", address});
    return 0;
}

int init(const plovik::InitCommand& command)
{
    const std::filesystem::path folder = plovik::folderForInit(command.folder);
    plovik::openInApplication({&folder, 1}, {"new-repository"});
    return 0;
}

int answer(const plovik::CommandLine& command)
{
    if (const auto* const cloning = std::get_if<plovik::CloneCommand>(&command))
        return clone(*cloning);
    if (const auto* const making = std::get_if<plovik::InitCommand>(&command))
        return init(*making);
    return open(std::get<plovik::OpenCommand>(command));
}

} // namespace

int main(int argc, char** argv)
{
    // What the toolkit warns of, such as an old locale, does not concern the user of a terminal.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    int ownArgument = 1;
    const QCoreApplication translatable(ownArgument, argv);
    plovik::installTranslations();

    const plovik::CommandLine parsed = plovik::parseCommandLine({argv + 1, argv + argc});
    if (const auto* const answer = std::get_if<plovik::CommandAnswer>(&parsed))
        return print(*answer);
    try {
        return answer(parsed);
    } catch (const std::exception& failure) {
        complain(failure.what());
        return 1;
    }
}
