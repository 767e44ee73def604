// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/linux/UniqueFd.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace plovik {

/// Which folder a path led to.
struct FolderIdentity {
    std::uint64_t device;
    std::uint64_t inode;
    bool operator==(const FolderIdentity&) const = default;
};

/// The folder at `path` now; none when there is none or it cannot be looked at.
std::optional<FolderIdentity> folderAt(const std::string& path);

/// Notices from outside that a root went away, came back or was replaced: a folder's own watch says nothing when the
/// folder is removed while a terminal still stands in it, when a parent is renamed, or when it does not exist. For one
/// thread.
class RootGuard {
public:
    /// Watches over `roots`, missing ones included, from now on.
    void arm(const std::vector<std::string>& roots);

    /// The roots that are not what they were when this, or for the first time arm(), last looked.
    std::vector<std::string> takeChanged();

    /// To poll for reading; -1 when there is nothing to wait for.
    int fd() const { return inotify_.get(); }

    /// To poll for POLLPRI, which clears it: the mounts, while a root is missing; -1 otherwise.
    int mountsFd() const { return mounts_.get(); }

    /// Takes what there is to read; takeChanged() says what came of it.
    void drain();

private:
    struct Root {
        std::string path;
        std::optional<FolderIdentity> identity;
    };

    void watchAbove(std::string path);

    UniqueFd inotify_;
    UniqueFd mounts_;
    std::vector<Root> roots_;
};

} // namespace plovik
