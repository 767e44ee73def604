// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/BranchChange.h"
#include "GitKit/records/Conflict.h"
#include "GitKit/records/FileChange.h"
#include "GitKit/records/Ignore.h"
#include "GitKit/records/OperationInProgress.h"
#include "GitKit/records/Patch.h"
#include "GitKit/records/Pick.h"
#include "GitKit/records/Reset.h"
#include "GitKit/records/RewriteOutcome.h"
#include "GitKit/records/RewritePlan.h"
#include "GitKit/records/Stash.h"
#include "app/store/StepKeeping.h"

#include <QString>

#include <optional>
#include <string>
#include <vector>

// What has to be kept of each action, and the words for it. Main thread. Ref names are full, and hashes too.
namespace plovik::undoable {

Undoable commit(const std::string& message);
Undoable amend(const std::string& message);

/// `ref` is a ref or a hash, `shown` its name in a sentence; `made` is the branch that is made for it, if one is.
Undoable checkout(const std::string& ref, const QString& shown, const std::optional<std::string>& made = {});
Undoable createBranch(const std::string& name, const std::optional<std::string>& startPoint,
                      gitkit::AfterCreating after);
/// `commit` tells where the branch begins, once that was fetched.
Undoable checkOutRequest(const std::string& name, const std::function<std::string()>& commit);
Undoable deleteBranch(const std::string& name);
Undoable renameBranch(const std::string& name, const std::string& newName);
/// For setting and unsetting it.
Undoable setUpstream(const std::string& branch);
Undoable addRemote(const std::string& remote);
/// For other addresses, and where the names differ, for another name.
Undoable changeRemote(const std::string& remote, const std::string& newName);
Undoable removeRemote(const std::string& remote);
Undoable createTag(const std::string& name);
Undoable deleteTag(const std::string& name);

Undoable merge(const std::string& ref, const QString& shown);
/// The same where the changes are staged and nothing is committed.
Undoable squash(const std::string& ref, const QString& shown);
/// `branch` is what is moved, as it is shown.
Undoable rebase(const std::string& ref, const QString& branch, const QString& shown);
/// For a plan that is carried out in memory. `outcome` tells what it comes to, once that was prepared.
Undoable rewrite(const gitkit::RewritePlan& plan, const QString& branch,
                 const std::function<gitkit::RewriteOutcome()>& outcome);
/// The same where git itself rebases.
Undoable rewriteByGit(const gitkit::RewritePlan& plan, const QString& branch);
/// For staged changes that go into commits of a plan that changes nothing: so many changes into so many commits.
Undoable absorb(int changes, int commits, const gitkit::RewritePlan& plan);
/// The same where all goes into one, which has this subject.
Undoable commitInto(const std::string& subject, const gitkit::RewritePlan& plan);
/// `to` is what it is moved on to, as it is shown; empty for its upstream.
Undoable fastForward(const std::string& branch, const QString& to = {});
Undoable moveBranch(const std::string& branch, const std::string& target);
Undoable cherryPick(const gitkit::Pick& pick);
Undoable revert(const gitkit::Pick& pick);
/// `commit` is the one that a rebase has stopped behind, as it is shown.
Undoable takeApart(const QString& commit);
/// `branch` is what is moved, as it is shown.
Undoable reset(gitkit::ResetKind kind, const std::string& target, const QString& branch);
/// `fetched` tells what was fetched for it, as fetchToPull() does, once that has happened.
Undoable pull(gitkit::PullBy how, const std::function<std::optional<std::string>()>& fetched);
/// For the list of what has happened: it cannot be taken back. `lost` are the branches there whose commits a push
/// replaces.
Undoable push(const std::string& branch, const std::string& remote, const std::vector<std::string>& lost = {});
/// The same for a branch or tag that is deleted there, by its full name there.
Undoable deleteOnRemote(const std::string& ref, const std::string& remote);

Undoable saveStash(const std::string& message, gitkit::UntrackedFiles untracked);
Undoable stashFiles(const std::string& message, const std::vector<gitkit::FileChange>& files);
Undoable stashStaged(const std::string& message);
Undoable branchFromStash(const std::string& name, const gitkit::Stash& stash);
Undoable applyStash(const gitkit::Stash& stash, gitkit::StashUse use);
/// Returns what has to be kept for an action that runs while the changes of files that git knows are stashed.
Undoable betweenStashes(Undoable action);
Undoable dropStash(const gitkit::Stash& stash);

/// For a step of an unfinished operation, or its end.
Undoable operation(gitkit::OperationInProgress::Kind kind, gitkit::OperationStep step);
Undoable markBisect();
/// For a command of the user's, of which nobody knows what it does.
Undoable ownCommand(const QString& title);

using Files = std::vector<gitkit::FileChange>;
/// Titles name the first file and count the others.
Undoable stage(const Files& files);
Undoable unstage(const Files& files);
Undoable takeSide(const std::vector<std::string>& paths);
/// For an answer to conflicts, which may take files that the user has changed; `label` as answerConflicts() gets it.
Undoable answer(const std::vector<gitkit::Conflict>& conflicts, gitkit::ConflictAnswer answer,
                const std::string& label);
/// `name` is that of the file with the patch, `paths` are what it changes.
Undoable applyPatch(const QString& name, const std::vector<std::string>& paths, gitkit::PatchWay way);
Undoable applyMails(const QString& name);
/// For patterns that are added to a list of ignored files.
Undoable ignore(const gitkit::IgnoreRequest& request);
Undoable startOver(const std::vector<std::string>& paths);
Undoable takeFile(const std::string& revision, const std::string& path);
/// keeping() keeps what it takes; its name goes to Undoable::kept.
Undoable discard(const Files& files);

} // namespace plovik::undoable
