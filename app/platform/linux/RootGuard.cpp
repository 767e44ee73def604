// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/linux/RootGuard.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <utility>

namespace plovik {

namespace {

constexpr std::uint32_t kMoved = IN_MOVE_SELF | IN_DELETE_SELF | IN_ONLYDIR | IN_MASK_ADD;
constexpr std::uint32_t kEntries = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_ATTRIB;

std::string parentOf(const std::string& path)
{
    const auto slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

} // namespace

std::optional<FolderIdentity> folderAt(const std::string& path)
{
    struct stat status{};
    if (::stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        return std::nullopt;
    return FolderIdentity{status.st_dev, status.st_ino};
}

void RootGuard::arm(const std::vector<std::string>& roots)
{
    // A new instance rather than the old one mended: there are a dozen watches at most.
    inotify_ = gitkit::UniqueFd(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    mounts_ = gitkit::UniqueFd();
    const std::vector<Root> before = std::exchange(roots_, {});
    for (const std::string& path : roots) {
        const auto known = std::ranges::find(before, path, &Root::path);
        // Looked at first, so that what happens while the watches are set shows as a change.
        roots_.push_back({path, known != before.end() ? known->identity : folderAt(path)});
        watchAbove(path);
        if (!mounts_ && !folderAt(path))
            mounts_ = gitkit::UniqueFd(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC));
    }
}

void RootGuard::watchAbove(std::string path)
{
    // Of the nearest folder that exists every entry matters, of those above only whether they stay where they are.
    std::uint32_t events = kMoved | kEntries;
    while (path != "/") {
        path = parentOf(path);
        if (::inotify_add_watch(inotify_.get(), path.c_str(), events) >= 0)
            events = kMoved;
    }
}

std::vector<std::string> RootGuard::takeChanged()
{
    std::vector<std::string> changed;
    for (Root& root : roots_) {
        const auto now = folderAt(root.path);
        if (std::exchange(root.identity, now) != now)
            changed.push_back(root.path);
    }
    return changed;
}

void RootGuard::drain()
{
    alignas(inotify_event) char buffer[4096];
    while (inotify_ && ::read(inotify_.get(), buffer, sizeof buffer) > 0) {
    }
}

} // namespace plovik
