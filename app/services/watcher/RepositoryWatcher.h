// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/FileEvents.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace plovik {

/// The questions that the watcher asks git. They are called on the watching thread, so they must own all that they use;
/// they may block and throw. `workingTree` is the watched one or one that is nested in it. Folders are relative to it,
/// as git prints them.
struct WatcherGit {
    using Path = std::filesystem::path;
    using Names = std::vector<std::string>;

    /// Returns the git directories of the working tree, which may lie outside of it.
    std::function<std::vector<Path>(const Path& workingTree)> directories;
    /// Returns the folders whose whole content git ignores.
    std::function<Names(const Path& workingTree)> ignoredFolders;
    /// Returns those of `folders` that git ignores.
    std::function<Names(const Path& workingTree, const Names& folders)> ignoredAmong;

    /// The user's git.
    static WatcherGit installed();
};

struct WatcherCallbacks {
    std::function<void(bool gitDirectoryChanged)> onChange;
    /// Once, when everything is watched.
    std::function<void()> onWatching = {};
    /// Once, when the system refuses to watch more folders: changes may go unseen from here on.
    std::function<void()> onLimitReached = {};
};

/// Tells when a repository changes, and whether its git directory did: the working tree with its git directories,
/// without what cannot change what a window shows (git's objects, folders that git ignores).
///
/// Owned by the repository's window and used on the main thread, where the callbacks come. Nothing is reported when the
/// watching cannot be set up. Callbacks may destroy the watcher.
class RepositoryWatcher {
public:
    RepositoryWatcher(const std::filesystem::path& topLevel, WatcherGit git, WatcherCallbacks callbacks,
                      FileEventLimits limits = {});

    /// No callback is called from here on.
    void stop() { events_.stop(); }

private:
    FileEvents events_;
};

/// Returns whether the absolute `path` is in a git directory: in one of `gitDirectories`, or in any folder named
/// ".git".
bool isInGitDirectory(std::string_view path, std::span<const std::string> gitDirectories);

/// Returns whether one of the absolute paths is in a git directory; nullopt when all of them are git's lock files.
std::optional<bool> gitDirectoryChanged(std::span<const std::string> paths,
                                        std::span<const std::string> gitDirectories);

} // namespace plovik
