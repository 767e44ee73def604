// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/FileEvents.h"
#include "app/services/watcher/RepositoryWatcher.h"

#include <mutex>
#include <unordered_set>

namespace plovik {

/// Returns whether the name ends like one of git's lock files, which come and go with every command.
inline bool isLockFile(std::string_view path) { return path.ends_with(".lock"); }

/// Returns whether `path` is `folder` or something below it.
inline bool liesIn(std::string_view path, std::string_view folder)
{
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

/// The git directories as the watching thread last found them, for the main thread to read.
class KnownGitDirectories {
public:
    std::vector<std::string> get() const
    {
        const std::lock_guard lock(mutex_);
        return directories_;
    }
    void set(std::vector<std::string> directories)
    {
        const std::lock_guard lock(mutex_);
        directories_ = std::move(directories);
    }

private:
    mutable std::mutex mutex_;
    std::vector<std::string> directories_;
};

/// Decides which folders of a repository are watched.
class RepositoryScope : public WatchScope {
public:
    RepositoryScope(const std::filesystem::path& topLevel, WatcherGit git, std::shared_ptr<KnownGitDirectories> known);

    std::vector<std::string> roots() override;
    void keepWatched(std::vector<std::string>& folders, FolderWalk walk) override;
    bool reports(const std::string& path) override;
    bool reshapedBy(const std::string& path) override;

private:
    bool isOwn(std::string_view path) const;
    void findGitDirectories();
    void findIgnored(const std::string& workingTree);
    void addIgnoredAmong(const std::vector<std::string>& folders);
    void noticeWorkingTree(const std::string& folder);
    const std::string& workingTreeOf(std::string_view folder) const;
    bool isGitDirectory(const std::string& folder) const;
    bool isOfNoInterest(const std::string& folder) const;

    std::string topLevel_;
    WatcherGit git_;
    std::shared_ptr<KnownGitDirectories> known_;
    std::vector<std::string> gitDirectories_;
    /// Folders inside the working tree that are working trees of their own: submodules and embedded repositories.
    std::unordered_set<std::string> nested_;
    std::unordered_set<std::string> ignored_;
};

} // namespace plovik
