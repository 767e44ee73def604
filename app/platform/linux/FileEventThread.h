// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/FileEvents.h"
#include "app/platform/linux/InotifyFolders.h"
#include "app/platform/linux/RootGuard.h"

#include <atomic>
#include <ctime>
#include <memory>
#include <mutex>
#include <unordered_set>

struct inotify_event;

namespace plovik {

/// The state that the main thread and the watching thread share.
class FileEvents::Link : public std::enable_shared_from_this<Link> {
public:
    explicit Link(FileEventCallbacks callbacks);

    /// On the main thread.
    void stop();

    bool stopped() const { return stopped_; }
    /// A descriptor that is readable once stopped.
    int wakeFd() const { return wake_.get(); }

    /// On the watching thread: call the callback on the main thread, unless stopped by then.
    void postBatch(FileEventBatch batch);
    void postWatching();
    void postLimitReached();

private:
    template <typename Call>
    void post(Call call);

    std::mutex posting_;
    std::atomic<bool> stopped_ = false;
    FileEventCallbacks callbacks_; // main thread only
    gitkit::UniqueFd wake_;
};

/// The changes of one batch while they are collected.
class CollectedPaths {
public:
    explicit CollectedPaths(std::size_t most) : most_(most) {}

    void add(const std::string& path);
    void addEverything() { everything_ = true; }
    bool empty() const { return paths_.empty() && !everything_; }
    FileEventBatch take();

private:
    std::size_t most_;
    bool everything_ = false;
    std::unordered_set<std::string> paths_;
};

/// The watching thread's work, from its first line to its last.
class FileEventThread {
public:
    FileEventThread(std::shared_ptr<FileEvents::Link> link, std::unique_ptr<WatchScope> scope, FileEventLimits limits);

    /// Returns once stopped, or when the system gives no means to watch.
    void run();

private:
    using Clock = std::chrono::steady_clock;
    using Folders = std::vector<std::string>;

    void wait();
    void drain();
    void handle(const inotify_event& event);
    void folderChanged(const inotify_event& event, const std::string& path);
    void report(const std::string& path);
    void flush();
    void settle();
    void checkRoots();
    void walkEverything();
    void walk(Folders level, FolderWalk kind);
    void enter(const std::string& folder, FolderWalk kind, InotifyFolders::Links links, Folders& below);
    void reportLimit();

    std::shared_ptr<FileEvents::Link> link_;
    std::unique_ptr<WatchScope> scope_;
    FileEventLimits limits_;
    InotifyFolders folders_;
    RootGuard guard_;
    std::unordered_set<std::string> roots_;
    CollectedPaths collected_;
    Folders appeared_;
    timespec started_{};
    bool watching_ = false;
    bool limitReported_ = false;

    /// A batch has just been reported, so changes are collected until `flushAt_`.
    bool inBurst_ = false;
    Clock::time_point flushAt_;
    /// Everything must be walked, but not before `walkAt_`.
    bool walkDue_ = true;
    Clock::time_point walkAt_;
};

} // namespace plovik
