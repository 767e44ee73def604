// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Push.h"

#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Branches that have become others here, while a remote still has what they were. Any thread; these block and throw as the
// methods of GitRepository do. Nothing is asked of the remote.

/// Returns the full hash of a commit; empty when there is none.
std::string hashOf(const GitRepository& repo, const std::string& revision);

/// Returns the full name of the ref that remembers where the remote's branch was at the last fetch; empty when none does.
std::string trackingRef(const GitRepository& repo, const RemoteBranch& branch);

/// Returns how many commits of `there` the branch has never had, as far as its reflog goes back. `branch` is a full name.
int strangersIn(const GitRepository& repo, const std::string& branch, const std::string& there);

/// Returns those among the branches, given by their full names, for which the place that they are pushed to has commits
/// that they had before and have not now, and no others.
std::vector<RewrittenBranch> rewrittenBranches(const GitRepository& repo, const std::vector<std::string>& branches);

/// Returns the one among them to push so that most of the others can go along: one that no other stands on, and HEAD's
/// before others. Null where there is none.
const RewrittenBranch* topmost(const GitRepository& repo, const std::vector<RewrittenBranch>& branches);

} // namespace gitkit
