// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/RewriteOutcome.h"
#include "GitKit/records/RewritePlan.h"
#include "GitKit/records/TreePair.h"
#include "GitKit/rewrite/CommitWriter.h"
#include "GitKit/runner/GitRunner.h"

#include <string>

namespace gitkit {

class GitRepository;

// What a plan comes to, found by merging in memory: no file and no ref is touched. Any thread; these block, end at a stop,
// and throw as the methods of GitRepository do. Needs Ability::mergesInMemory for anything that has to be merged.

/// Whether plans can be rehearsed here: git must be able to, and nothing may have to be fetched for it.
bool canRehearse(const GitRepository& repo);

/// Finds out what a plan comes to and leaves nothing behind. A commit where git is to stop counts as one that stays.
RewriteOutcome rehearsed(const GitRepository& repo, const RewritePlan& plan);

/// Writes the commits of a plan. No ref leads to them. Ends at the first that conflicts.
RewriteOutcome written(const GitRepository& repo, const RewritePlan& plan);

/// Returns the tree that a part of a commit makes of the tree beneath it. `trees` are that one, which may be empty for
/// none, and the commit's own.
std::string partTree(const GitRepository& repo, const TreePair& trees, const CommitPart& part,
                     const RunOptions& objects = {});

} // namespace gitkit
