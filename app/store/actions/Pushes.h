// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/GitRef.h"
#include "GitKit/records/Push.h"
#include "app/store/actions/Actors.h"

#include <functional>
#include <string>
#include <vector>

namespace gitkit {
struct UndoStep;
} // namespace gitkit

namespace plovik {
class Snapshot;
} // namespace plovik

namespace plovik::actions {

// Pushing with choices, and what others have pushed meanwhile. None of this can be undone. Main thread.

/// Pushes the current branch. Without an upstream, pushes to the only remote and makes that the upstream, or asks where there
/// are several. Reports when there is no branch or no remote. A push that is rejected asks the remote what it has, names that
/// and offers the ways on.
void push(Actors actors);

/// Shows the sheet that asks what is pushed where. It begins with the upstream of the branch, or else with "origin" or the
/// first remote.
void askWhereToPush(Actors actors, const std::string& branch);

/// Shows the sheet for a branch whose place on the remote still has what it was, beginning with replacing that.
void askToReplace(Actors actors, const gitkit::RewrittenBranch& branch);

void pushBranch(Actors actors, const gitkit::Push& push);

/// Has a remote follow the rename of a local branch that has happened: pushes it under its name, and deletes the old one,
/// which was seen at `hash`.
void renameOnRemote(Actors actors, const std::string& branch, const gitkit::RemoteBranch& old, const std::string& hash);

void pushTag(Actors actors, const std::string& tag, const std::string& remote);

/// Asks the remote which tags it lacks, names them in a question, and then pushes them.
void confirmPushTags(Actors actors, const std::string& remote);
/// Returns the remote that a push without further words means: that of the current branch's upstream, or else "origin" or the
/// first one. Empty where there is none.
std::string usualRemote(const Snapshot& now);

/// Returns what a step has replaced or deleted on a remote, so that it can be pushed back.
std::vector<gitkit::LostThere> lostByPush(const Snapshot& now, const gitkit::UndoStep& step);
/// Asks, and then gives the branches of a remote back the commits that they had. There is one at least.
void confirmPushBack(Actors actors, const std::vector<gitkit::LostThere>& lost);

/// Asks, and then deletes a remote branch, or a tag, on a remote. Only what is there as it is shown is deleted.
void confirmDeleteOnRemote(Actors actors, const gitkit::GitRef& ref, const std::string& remote);

/// Deletes the branch of `to`, which was seen at `hash`, and calls `then` after that. Does not ask.
void deleteOnRemote(Actors actors, const gitkit::RemoteBranch& to, const std::string& hash,
                    const std::function<void()>& then);

} // namespace plovik::actions
