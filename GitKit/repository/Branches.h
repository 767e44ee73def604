// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/RemoteBranch.h"

#include <string>

namespace gitkit {

class GitRepository;

// Names and upstreams of local branches. Any thread; these block and throw as the methods of GitRepository do; callers
// keep the writers of one repository apart. Branches are named as in refs/heads, without that.

/// Renames a branch together with its log and its settings, also where it is checked out.
void renameBranch(const GitRepository& repo, const std::string& branch, const std::string& newName);

enum class UpstreamKind {
    followed, ///< the remote branch is fetched, so that both can be compared
    unknown,  ///< it is pulled from and pushed to, but nothing here says where it is
};
/// Has a branch follow a remote one (refs/remotes/...). One that no fetch brings is set all the same.
UpstreamKind setUpstream(const GitRepository& repo, const std::string& branch, const std::string& upstream);
/// Counts the commits that a branch leads to and no other branch, tag or remote branch does, nor `target`, which is a hash or
/// empty. Stops counting at `most`.
int commitsOnlyOn(const GitRepository& repo, const std::string& branch, const std::string& target, int most);

/// Does nothing for a branch without an upstream.
void unsetUpstream(const GitRepository& repo, const std::string& branch);

} // namespace gitkit
