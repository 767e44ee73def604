// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/linux/InotifyFolders.h"

#include <cerrno>
#include <sys/inotify.h>

namespace plovik {

namespace {

constexpr std::uint32_t kEvents = IN_CREATE | IN_DELETE | IN_CLOSE_WRITE | IN_MODIFY | IN_ATTRIB | IN_MOVED_FROM |
                                  IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_EXCL_UNLINK;

} // namespace

std::string joined(std::string_view folder, std::string_view name)
{
    std::string path;
    path.reserve(folder.size() + 1 + name.size());
    path += folder;
    if (!folder.ends_with('/'))
        path += '/';
    path += name;
    return path;
}

InotifyFolders::InotifyFolders(std::size_t most) : inotify_(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)), most_(most) {}

InotifyFolders::Added InotifyFolders::add(const std::string& path, Links links)
{
    const auto known = folders_.find(path);
    if (known == folders_.end() && folders_.size() >= most_)
        return Added::Full;
    const int watch =
        ::inotify_add_watch(inotify_.get(), path.c_str(), kEvents | (links == Links::Refuse ? IN_DONT_FOLLOW : 0u));
    if (watch < 0)
        return errno == ENOSPC || errno == ENOMEM ? Added::Full : Added::Missing;
    if (known != folders_.end() && known->second.watch == watch) {
        known->second.walk = walk_;
        return Added::Known;
    }

    // This folder may have borne another name, and another folder this name. What is below either is put right by the
    // events that tell of it, which are still in the queue, or by the walk that this is part of.
    forget(watch);
    if (known != folders_.end())
        remove(known);
    byWatch_[watch] = folders_.insert_or_assign(path, Folder{watch, walk_}).first;
    return Added::New;
}

InotifyFolders::Folders::iterator InotifyFolders::remove(Folders::iterator folder)
{
    ::inotify_rm_watch(inotify_.get(), folder->second.watch);
    byWatch_.erase(folder->second.watch);
    return folders_.erase(folder);
}

void InotifyFolders::drop(const std::string& path)
{
    if (const auto folder = folders_.find(path); folder != folders_.end())
        remove(folder);
    const std::string below = joined(path, "");
    for (auto folder = folders_.lower_bound(below); folder != folders_.end() && folder->first.starts_with(below);)
        folder = remove(folder);
}

void InotifyFolders::forget(int watch)
{
    if (const auto folder = byWatch_.find(watch); folder != byWatch_.end()) {
        folders_.erase(folder->second);
        byWatch_.erase(folder);
    }
}

const std::string* InotifyFolders::path(int watch) const
{
    const auto folder = byWatch_.find(watch);
    return folder == byWatch_.end() ? nullptr : &folder->second->first;
}

void InotifyFolders::dropUnseen()
{
    for (auto folder = folders_.begin(); folder != folders_.end();)
        folder = folder->second.walk == walk_ ? std::next(folder) : remove(folder);
}

} // namespace plovik
