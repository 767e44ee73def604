// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Merge.h"

#include <string>

namespace gitkit {

class GitRepository;

// Bringing branches together. Any thread; these block and throw as the methods of GitRepository do; callers keep the writers
// of one repository apart. Refs are full names or hashes, branches are named as in refs/heads.

/// Whether commits can be merged here without touching a file and without the network.
bool mergesInMemory(const GitRepository& repo);

/// Reads what merging a ref into HEAD would do. Leaves nothing in the repository.
MergePreview mergePreview(const GitRepository& repo, const std::string& ref);

/// Reads what rebasing HEAD onto a ref would do. Leaves nothing in the repository. Of very many commits it does not tell
/// whether they conflict.
RebasePreview rebasePreview(const GitRepository& repo, const std::string& ref);

void mergeBy(const GitRepository& repo, const std::string& ref, MergeKind kind);

/// Replays the commits that only HEAD has on top of a ref.
void rebaseOnto(const GitRepository& repo, const std::string& ref);

/// Fetches from the remote that a branch is pulled from. Throws ErrorKind::noUpstream when there is none.
void fetchUpstreamOf(const GitRepository& repo, const std::string& branch);

/// Moves a branch that is checked out nowhere on to a ref, given by its full name; to its upstream where none is given. Throws
/// ErrorKind::notFastForward when it has commits of its own, noUpstream, and checkedOutElsewhere. A branch that is there
/// already stays.
void fastForward(const GitRepository& repo, const std::string& branch, const std::string& to = {});

/// Moves a branch that is checked out nowhere from one commit to another one, by their full hashes. Throws
/// ErrorKind::checkedOutElsewhere, and changedMeanwhile when it is not at `from`.
void moveBranch(const GitRepository& repo, const std::string& branch, const std::string& from, const std::string& to);

} // namespace gitkit
