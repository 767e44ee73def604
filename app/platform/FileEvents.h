// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace plovik {

/// Why folders are looked at: everything is walked again, or the folders have just appeared.
enum class FolderWalk { Everything, Appeared };

/// What a FileEvents watches and what it passes on. Used, and in the end destroyed, on the watching thread only, so it
/// must own all that it touches. May block; must not throw. Paths are absolute, as bytes.
class WatchScope {
public:
    virtual ~WatchScope() = default;

    /// The folders whose trees are watched, most important first. Asked at the start of every walk over everything.
    virtual std::vector<std::string> roots() = 0;

    /// Removes those of `folders` that must not be watched. All of them are inside a root; a call gets a whole level of
    /// a tree.
    virtual void keepWatched(std::vector<std::string>& folders, FolderWalk walk) = 0;

    /// Returns whether a change of `path` is reported. Other changes neither start nor join a batch.
    virtual bool reports(const std::string& path) = 0;

    /// Returns whether a change of `path` may change the answers above, so that everything must be walked again.
    virtual bool reshapedBy(const std::string& path) = 0;
};

/// Changes that came close together, each path once, in no order.
struct FileEventBatch {
    std::vector<std::string> paths;
    /// Changes may be missing from `paths`: the system lost count, or a root came or went.
    bool everything = false;
};

/// All are called on the main thread.
struct FileEventCallbacks {
    std::function<void(FileEventBatch)> onBatch;
    /// Once, when everything is watched for the first time.
    std::function<void()> onWatching = {};
    /// Once, when the system refuses to watch more folders; those that are watched stay watched.
    std::function<void()> onLimitReached = {};
};

struct FileEventLimits {
    /// The first change of a burst is told at once, those that follow are collected for this long.
    std::chrono::milliseconds latency{400};
    /// Files named in one batch; past that, their folders stand for them, and past twice that `everything`.
    std::size_t mostPaths = 4096;
    /// Folders watched at once, besides the system's own limit.
    std::size_t mostFolders = 1'000'000;
};

/// Tells what changes in trees of folders, on a thread of its own that sleeps while nothing does.
///
/// Folders are watched from the moment they appear, with what is already in them reported; moved folders are followed,
/// and symbolic links are not. A root that is deleted, renamed or unmounted is reported, and again when it comes back.
/// Setting up goes on in the background: what changes meanwhile is reported as far as folders' own times show it.
///
/// Owned and used on the main thread, where the application's event loop runs. Callbacks may stop or destroy it.
class FileEvents {
public:
    FileEvents(std::unique_ptr<WatchScope> scope, FileEventCallbacks callbacks, FileEventLimits limits = {});
    ~FileEvents();
    FileEvents(const FileEvents&) = delete;
    FileEvents& operator=(const FileEvents&) = delete;

    /// Ends the watching without waiting for the thread; nothing is called from here on.
    void stop();

    /// Shared with the watching thread, which may outlive this object by one blocking call of the scope.
    class Link;

private:
    std::shared_ptr<Link> link_;
};

} // namespace plovik
