// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/DesktopFiles.h"

#include "GitKit/repository/OutsideTool.h"
#include "app/store/GitAccess.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/WindowState.h"

#include <stdexcept>

namespace plovik::actions {

namespace {

using Files = std::vector<gitkit::FileChange>;

StoreServices::Files absolutePaths(const Actors& actors, const Files& files)
{
    StoreServices::Files paths;
    for (const gitkit::FileChange& file : files)
        paths.push_back(actors.snapshot.root() / file.path);
    return paths;
}

/// Returns a callback that reports a failure, and does nothing once the store is gone.
StoreServices::Failed reporting(const Actors& actors)
{
    return [&window = actors.window, alive = std::weak_ptr(actors.git.alive())](const std::string& problem) {
        if (!alive.expired())
            window.report(failureOf(std::runtime_error(problem)));
    };
}

QCoro::Task<> openingInOutsideTool(Actors actors, gitkit::OutsideTool tool, std::string path)
{
    std::vector<std::string> arguments;
    try {
        arguments = co_await actors.git.read(&gitkit::outsideToolCommand, tool, path);
    } catch (const std::exception& failure) {
        actors.window.report(failureOf(failure));
        co_return;
    }
    if (actors.services.startGit)
        actors.services.startGit(arguments, actors.snapshot.root(), reporting(actors));
}

} // namespace

void reveal(Actors actors, const Files& files)
{
    if (actors.services.reveal)
        actors.services.reveal(absolutePaths(actors, files), reporting(actors));
}

void openInEditor(Actors actors, const Files& files)
{
    if (actors.services.openInEditor)
        actors.services.openInEditor(absolutePaths(actors, files), reporting(actors));
}

void openAtLine(Actors actors, const std::filesystem::path& file, int line, int column)
{
    if (actors.services.openAtLine)
        actors.services.openAtLine(file, line, column, reporting(actors));
}

void openInOutsideTool(Actors actors, gitkit::OutsideTool tool, const std::string& path)
{
    launch(openingInOutsideTool(actors, tool, path));
}

void openTerminal(Actors actors)
{
    if (actors.services.openTerminal)
        actors.services.openTerminal(actors.snapshot.root(), reporting(actors));
}

} // namespace plovik::actions
