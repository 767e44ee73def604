// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace gitkit {

/// A branch of a remote, as the remote names it.
struct RemoteBranch {
    std::string remote;
    std::string branch;

    bool operator==(const RemoteBranch&) const = default;
};

/// Takes the name of a remote branch apart, such as origin/topic. The longest name of a remote counts; where no remote has
/// it, both parts are empty.
inline RemoteBranch remoteBranchOf(const std::string& name, const std::vector<std::string>& remotes)
{
    RemoteBranch found;
    for (const std::string& remote : remotes) {
        if (name.starts_with(remote + '/') && remote.size() > found.remote.size())
            found = {remote, name.substr(remote.size() + 1)};
    }
    return found;
}

} // namespace gitkit
