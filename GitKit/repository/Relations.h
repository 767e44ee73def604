// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"

#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// What stands around a commit, which is given by its full hash. Any thread; these block and throw as the methods of
// GitRepository do.

/// Returns the commits of all refs that have it for a parent. Costs a walk down to it.
std::vector<Commit> children(const GitRepository& repo, const std::string& hash);
/// Returns the full names of the branches, remote branches and tags that contain it. May cost a walk of the history.
std::vector<std::string> refsContaining(const GitRepository& repo, const std::string& hash);
/// Returns the short name of the nearest tag at it or before it; empty if there is none.
std::string nearestTagBefore(const GitRepository& repo, const std::string& hash);
/// Returns the short name of the oldest tag that contains it; empty if there is none.
std::string oldestTagContaining(const GitRepository& repo, const std::string& hash);

} // namespace gitkit
