// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/UniqueFd.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace plovik {

/// The identity of the folder that a path led to.
struct FolderIdentity {
    std::uint64_t device;
    std::uint64_t inode;
    bool operator==(const FolderIdentity&) const = default;
};

/// Returns the folder at `path` now; nullopt when there is none or it cannot be looked at.
std::optional<FolderIdentity> folderAt(const std::string& path);

/// Notices from outside that a root went away, came back or was replaced. A folder's own watch says nothing when the
/// folder is removed while a process uses it as its working folder, when a parent is renamed, or when the folder does
/// not exist. For one thread.
class RootGuard {
public:
    /// Watches over `roots`, missing ones included, from now on.
    void arm(const std::vector<std::string>& roots);

    /// Returns the roots that changed since the last call, or since arm() for the first call.
    std::vector<std::string> takeChanged();

    /// A descriptor to poll for reading; -1 when there is nothing to wait for.
    int fd() const { return inotify_.get(); }

    /// A descriptor of the mounts, to poll for POLLPRI, which polling also clears; -1 unless a root is missing.
    int mountsFd() const { return mounts_.get(); }

    /// Reads the events that there are; takeChanged() returns their result.
    void drain();

private:
    struct Root {
        std::string path;
        std::optional<FolderIdentity> identity;
    };

    void watchAbove(std::string path);

    gitkit::UniqueFd inotify_;
    gitkit::UniqueFd mounts_;
    std::vector<Root> roots_;
};

} // namespace plovik
