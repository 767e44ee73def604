// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace gitkit {

/// What the configuration says of a remote.
struct RemoteSettings {
    std::string name;
    std::string url;            ///< the first, as it was written; empty where there is none
    std::string pushUrl = {};   ///< the first for pushing; empty where pushes go to `url`
    bool skipsFetchAll = false; ///< a fetch of all remotes leaves it out

    bool operator==(const RemoteSettings&) const = default;
};

} // namespace gitkit
