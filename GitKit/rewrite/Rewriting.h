// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Movable.h"
#include "GitKit/records/RewriteOutcome.h"
#include "GitKit/records/RewritePlan.h"

#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Carrying out a plan. Any thread; these block and throw as the methods of GitRepository do; callers keep the writers of one
// repository apart.

/// Returns where the commits of a plan are read.
MovablePlace placeOf(const RewritePlan& plan);

/// Throws ErrorKind::changedMeanwhile when the branch is no longer as the plan has it, operationUnfinished, and conflicts
/// while there are some in the index. For a plan of a branch that is not checked out, throws checkedOutElsewhere when another
/// working tree has it.
void requireAsPlanned(const GitRepository& repo, const RewritePlan& plan);

/// Asks the hooks and writes the commits of a plan, which no ref leads to yet. Throws as requireAsPlanned() does, and
/// ErrorKind::rejectedByHook. The outcome may be one with conflicts.
RewriteOutcome prepareRewrite(const GitRepository& repo, const RewritePlan& plan);

/// Moves the branch, the other branches that stand on these commits and are held by nothing, and index and files by what
/// the newest commit differs: what was edited or staged stays as it is. `outcome` is a clean one of prepareRewrite(), and
/// `reason` the line for the reflogs. Throws before anything is written as requireAsPlanned() does, when a ref has moved, and
/// when edited files or files that git does not know are in the way.
void applyRewrite(const GitRepository& repo, const RewritePlan& plan, const RewriteOutcome& outcome,
                  const std::string& reason);

/// Returns whether git itself has to carry a plan out, whatever it comes to: it is to stop, or nothing can be merged in
/// memory.
bool needsGit(const GitRepository& repo, const RewritePlan& plan);

/// Lets git rebase by the plan's list, which it can only do for what is checked out. It stops where commits conflict and where the plan says so. Throws ErrorKind::conflicts
/// where it has stopped, and wouldOverwriteLocalChanges where edited files are in the way.
void rewriteByGit(const GitRepository& repo, const RewritePlan& plan);

} // namespace gitkit
