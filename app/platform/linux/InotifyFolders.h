// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/UniqueFd.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

namespace plovik {

/// Returns the path of `name` inside `folder`.
std::string joined(std::string_view folder, std::string_view name);

/// The folders that one inotify instance watches, found by path and by watch. For one thread.
class InotifyFolders {
public:
    enum class Added { New, Known, Missing, Full };
    enum class Links { Follow, Refuse };

    /// Watches at most `most` folders.
    explicit InotifyFolders(std::size_t most);

    /// The descriptor to poll and to read from; -1 when the system gives no more instances.
    int fd() const { return inotify_.get(); }

    /// Watches `path`. A folder that was known under another path has this path from now on.
    Added add(const std::string& path, Links links);

    /// Stops watching `path` and every folder below it.
    void drop(const std::string& path);

    /// Forgets a watch that the system has already removed.
    void forget(int watch);

    bool contains(const std::string& path) const { return folders_.contains(path); }

    /// Returns the folder's path, valid until the next change here; null for a watch that is no longer ours.
    const std::string* path(int watch) const;

    /// Between these two, add() marks what is still wanted; what is not marked then is dropped.
    void beginWalk() { ++walk_; }
    void dropUnseen();

private:
    struct Folder {
        int watch;
        std::uint32_t walk;
    };
    using Folders = std::map<std::string, Folder, std::less<>>;

    Folders::iterator remove(Folders::iterator folder);

    gitkit::UniqueFd inotify_;
    std::size_t most_;
    std::uint32_t walk_ = 0;
    Folders folders_;
    std::unordered_map<int, Folders::iterator> byWatch_;
};

} // namespace plovik
