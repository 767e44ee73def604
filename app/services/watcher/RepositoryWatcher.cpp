// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/watcher/RepositoryWatcher.h"

#include "GitKit/repository/ConfiguredPrograms.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "app/services/watcher/RepositoryScope.h"

#include <algorithm>

namespace plovik {

namespace {

/// The watcher reads names only, so no filter runs; and it never fetches, because nobody has asked for that.
gitkit::GitRepository repositoryAt(const std::filesystem::path& workingTree)
{
    return gitkit::GitRepository(workingTree, {.environment = gitkit::withoutFetching().environment});
}

} // namespace

WatcherGit WatcherGit::installed()
{
    return {
        .directories =
            [](const Path& workingTree) {
                auto [own, common] = gitkit::gitDirectories(repositoryAt(workingTree));
                return std::vector{std::move(own), std::move(common)};
            },
        .ignoredFolders = [](const Path& workingTree) { return gitkit::ignoredFolders(repositoryAt(workingTree)); },
        .ignoredAmong = [](const Path& workingTree,
                           const Names& folders) { return gitkit::ignoredAmong(repositoryAt(workingTree), folders); },
    };
}

bool isInGitDirectory(std::string_view path, std::span<const std::string> gitDirectories)
{
    if (path.ends_with("/.git") || path.find("/.git/") != std::string_view::npos)
        return true;
    return std::ranges::any_of(gitDirectories,
                               [path](const std::string& directory) { return liesIn(path, directory); });
}

std::optional<bool> gitDirectoryChanged(std::span<const std::string> paths, std::span<const std::string> gitDirectories)
{
    std::optional<bool> changed;
    for (const std::string& path : paths) {
        if (isLockFile(path))
            continue;
        changed = isInGitDirectory(path, gitDirectories);
        if (*changed)
            break;
    }
    return changed;
}

RepositoryWatcher::RepositoryWatcher(const std::filesystem::path& topLevel, WatcherGit git, WatcherCallbacks callbacks,
                                     FileEventLimits limits)
    : events_([&] {
          auto directories = std::make_shared<KnownGitDirectories>();
          auto onBatch = [directories, onChange = std::move(callbacks.onChange)](const FileEventBatch& batch) {
              const auto changed = batch.everything ? true : gitDirectoryChanged(batch.paths, directories->get());
              if (changed)
                  onChange(*changed);
          };
          return FileEvents(std::make_unique<RepositoryScope>(topLevel, std::move(git), std::move(directories)),
                            {.onBatch = std::move(onBatch),
                             .onWatching = std::move(callbacks.onWatching),
                             .onLimitReached = std::move(callbacks.onLimitReached)},
                            limits);
      }())
{}

} // namespace plovik
