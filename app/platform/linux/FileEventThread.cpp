// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/linux/FileEventThread.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/inotify.h>
#include <sys/stat.h>

namespace plovik {

namespace {

using namespace std::chrono_literals;

/// Within a burst the queue is emptied this often: seldom enough to spare the processor, often enough for its 16,384
/// places.
constexpr auto kBurstNap = 50ms;

/// The number of reads of 64 KiB before the thread does anything else.
constexpr int kReadsInARow = 64;

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

OpenFolder openFolder(const std::string& path)
{
    gitkit::UniqueFd fd(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    OpenFolder folder(fd ? ::fdopendir(fd.get()) : nullptr);
    if (folder)
        fd.release();
    return folder;
}

bool isFolder(const dirent& entry, DIR* folder)
{
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    struct stat status{};
    return ::fstatat(::dirfd(folder), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
}

bool changedSince(const timespec& time, DIR* folder)
{
    struct stat status{};
    if (::fstat(::dirfd(folder), &status) != 0)
        return false;
    const timespec& changed = status.st_mtim;
    return changed.tv_sec != time.tv_sec ? changed.tv_sec > time.tv_sec : changed.tv_nsec > time.tv_nsec;
}

} // namespace

void CollectedPaths::add(const std::string& path)
{
    if (everything_)
        return;
    if (paths_.size() < most_)
        paths_.insert(path);
    else if (paths_.size() < 2 * most_)
        paths_.insert(path.substr(0, std::max<std::size_t>(path.rfind('/'), 1)));
    else
        everything_ = true;
}

FileEventBatch CollectedPaths::take()
{
    FileEventBatch batch;
    batch.everything = std::exchange(everything_, false);
    batch.paths.reserve(paths_.size());
    auto paths = std::exchange(paths_, {});
    while (!paths.empty())
        batch.paths.push_back(std::move(paths.extract(paths.begin()).value()));
    return batch;
}

FileEventThread::FileEventThread(std::shared_ptr<FileEvents::Link> link, std::unique_ptr<WatchScope> scope,
                                 FileEventLimits limits)
    : link_(std::move(link)), scope_(std::move(scope)), limits_(limits), folders_(limits.mostFolders),
      collected_(limits.mostPaths)
{
    ::clock_gettime(CLOCK_REALTIME, &started_);
    ::pthread_setname_np(::pthread_self(), "file-events");
}

void FileEventThread::run()
{
    if (folders_.fd() < 0) {
        reportLimit();
        return;
    }
    settle();
    watching_ = true;
    link_->postWatching();
    for (flush(); !link_->stopped(); flush()) {
        wait();
        drain();
        flush();
        settle();
    }
}

void FileEventThread::wait()
{
    if (!inBurst_ && !walkDue_) {
        pollfd sources[] = {{link_->wakeFd(), POLLIN, 0},
                            {folders_.fd(), POLLIN, 0},
                            {guard_.fd(), POLLIN, 0},
                            {guard_.mountsFd(), POLLPRI, 0}};
        ::poll(sources, std::size(sources), -1);
        return;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>((inBurst_ ? flushAt_ : walkAt_) - Clock::now());
    pollfd stopped{link_->wakeFd(), POLLIN, 0};
    ::poll(&stopped, 1, static_cast<int>(std::clamp<std::chrono::milliseconds>(left, 0ms, kBurstNap).count()));
}

void FileEventThread::drain()
{
    guard_.drain();
    alignas(inotify_event) char buffer[64 * 1024];
    for (int reads = 0; reads < kReadsInARow && !link_->stopped(); ++reads) {
        const ssize_t size = ::read(folders_.fd(), buffer, sizeof buffer);
        if (size <= 0)
            return;
        for (const char* at = buffer; at < buffer + size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(at);
            handle(*event);
            at += sizeof(inotify_event) + event->len;
        }
    }
}

void FileEventThread::handle(const inotify_event& event)
{
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
        collected_.addEverything();
        walkDue_ = true;
        return;
    }
    if ((event.mask & IN_IGNORED) != 0) {
        folders_.forget(event.wd);
        return;
    }
    const std::string* folder = folders_.path(event.wd);
    // The parent folder reports what happened to a folder itself; the guard reports what happened to a root.
    if (!folder || (event.mask & (IN_MOVE_SELF | IN_DELETE_SELF | IN_UNMOUNT)) != 0)
        return;

    const std::string path = event.len > 0 ? joined(*folder, event.name) : *folder;
    if (event.len > 0 && (event.mask & IN_ISDIR) != 0)
        folderChanged(event, path);
    report(path);
}

void FileEventThread::folderChanged(const inotify_event& event, const std::string& path)
{
    // A moved folder counts as one that went and one that appeared, so changes during the move are found as well. A
    // folder that moves in may replace an empty one; nothing else reports that.
    if ((event.mask & (IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO)) != 0)
        folders_.drop(path);
    // New attributes may be the permission to look into a folder that was closed until now.
    if ((event.mask & (IN_CREATE | IN_MOVED_TO | IN_ATTRIB)) != 0 && !folders_.contains(path))
        appeared_.push_back(path);
}

void FileEventThread::report(const std::string& path)
{
    if (!scope_->reports(path))
        return;
    if (scope_->reshapedBy(path))
        walkDue_ = true;
    collected_.add(path);
}

void FileEventThread::flush()
{
    const auto now = Clock::now();
    if (inBurst_ && now < flushAt_)
        return;
    inBurst_ = !collected_.empty();
    if (!inBurst_)
        return;
    link_->postBatch(collected_.take());
    flushAt_ = now + limits_.latency;
}

void FileEventThread::settle()
{
    checkRoots();
    walk(std::exchange(appeared_, {}), FolderWalk::Appeared);
    if (walkDue_ && Clock::now() >= walkAt_) {
        walkEverything();
        walkAt_ = Clock::now() + limits_.latency;
    }
}

void FileEventThread::checkRoots()
{
    for (const std::string& root : guard_.takeChanged()) {
        collected_.add(root);
        collected_.addEverything();
        walkDue_ = true;
    }
}

void FileEventThread::walkEverything()
{
    walkDue_ = false;
    const Folders roots = scope_->roots();
    roots_ = {roots.begin(), roots.end()};
    guard_.arm(roots);
    folders_.beginWalk();
    for (const std::string& root : roots) {
        Folders below;
        enter(root, FolderWalk::Everything, InotifyFolders::Links::Follow, below);
        walk(std::move(below), FolderWalk::Everything);
    }
    if (!link_->stopped())
        folders_.dropUnseen();
    checkRoots();
}

void FileEventThread::walk(Folders level, FolderWalk kind)
{
    while (!level.empty() && !link_->stopped()) {
        std::erase_if(level, [this](const std::string& folder) { return roots_.contains(folder); });
        scope_->keepWatched(level, kind);
        Folders below;
        for (const std::string& folder : level) {
            if (link_->stopped())
                return;
            enter(folder, kind, InotifyFolders::Links::Refuse, below);
        }
        level = std::move(below);
    }
}

void FileEventThread::enter(const std::string& folder, FolderWalk kind, InotifyFolders::Links links, Folders& below)
{
    // The folder is watched before it is read, so that a change in between is seen twice and not missed.
    const auto added = folders_.add(folder, links);
    if (added == InotifyFolders::Added::Full)
        reportLimit();
    const OpenFolder open = added == InotifyFolders::Added::Missing ? nullptr : openFolder(folder);
    if (!open)
        return;

    if (kind == FolderWalk::Everything && added == InotifyFolders::Added::New &&
        (watching_ || changedSince(started_, open.get())))
        report(folder);
    while (const dirent* entry = ::readdir(open.get())) {
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..")
            continue;
        const bool isBelow = isFolder(*entry, open.get());
        if (kind == FolderWalk::Appeared)
            report(joined(folder, name));
        if (isBelow && added != InotifyFolders::Added::Full)
            below.push_back(joined(folder, name));
    }
}

void FileEventThread::reportLimit()
{
    if (!std::exchange(limitReported_, true))
        link_->postLimitReached();
}

} // namespace plovik
