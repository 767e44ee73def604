// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Absorb.h"
#include "GitKit/records/CommitMode.h"
#include "GitKit/records/RewriteOutcome.h"
#include "GitKit/records/RewritePlan.h"

#include <optional>
#include <string>

namespace gitkit {

class GitRepository;

// Staged changes that go into commits which are there already. Any thread; these block and throw as the methods of
// GitRepository do; callers keep the writers of one repository apart. Neither the index nor a file is touched by any of it:
// what has gone into a commit stops being a difference.

/// Finds for each staged change of lines the commit that it belongs to. Binary files and whole files stay staged.
AbsorbProposal absorbProposal(const GitRepository& repo);
/// Returns what is staged, as AbsorbProposal::staged has it.
std::string stagedList(const GitRepository& repo);

/// Writes the commits with the changes in them: each of `proposal` that has a target. No ref leads to them. Merges nothing,
/// so it never conflicts. Asks the hooks first that may refuse a rebase or a commit of what is staged. Throws
/// ErrorKind::changedMeanwhile where something else is staged than the proposal has, and where the newest tree is not
/// HEAD's with these changes; and rejectedByHook.
RewriteOutcome absorbed(const GitRepository& repo, const AbsorbProposal& proposal,
                        CommitHooks hooks = CommitHooks::run);

/// How what is staged goes into a commit.
struct StagedInto {
    std::optional<std::string> message = {}; ///< UTF-8; nullopt: it keeps its own
    CommitHooks hooks = CommitHooks::run;
};

/// Writes the commits of a plan that changes nothing, with all that is staged in one of them. Asks the hooks as absorbed()
/// does, and commit-msg about another message. Throws as absorbed() does,
/// ErrorKind::conflicts where it does not fit there, and nothingToDo where nothing is staged and no other message is given.
RewriteOutcome withStagedIn(const GitRepository& repo, const RewritePlan& plan, const std::string& commit,
                            const StagedInto& how = {});

/// Moves the branch and those along to commits that were written so. Throws as applyRewrite() does.
void applyStagedInto(const GitRepository& repo, const RewritePlan& plan, const RewriteOutcome& outcome,
                     const std::string& reason);

} // namespace gitkit
