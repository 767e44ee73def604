// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Movable.h"

#include <string>

namespace gitkit {

class GitRepository;

// Any thread; these block and throw as the methods of GitRepository do.

/// Reads which commits a plan may do something to: from HEAD, or a branch, down to the first merge. Empty before the first
/// commit, and where there is no such branch.
MovableCommits movableCommits(const GitRepository& repo, const MovablePlace& place = {});

/// Returns the name of a branch without refs/heads.
std::string shortBranch(const std::string& name);

/// Returns the full name of the branch that is checked out; empty while HEAD is detached.
std::string headBranch(const GitRepository& repo);

/// Returns why a branch cannot be moved, as BranchOnCommit says it; empty when nothing holds it.
std::string holderOf(const GitRepository& repo, const std::string& branch);

} // namespace gitkit
