// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/GitRef.h"
#include "GitKit/records/Merge.h"
#include "app/store/actions/Actors.h"

#include <string>

namespace plovik::actions {

// Bringing branches together. Main thread.

/// Merges a branch or tag into what is checked out.
void merge(Actors actors, const gitkit::GitRef& ref, gitkit::MergeKind kind = gitkit::MergeKind::normal);
/// Replays the commits that only the checked out branch has on top of another branch or a tag.
void rebaseOnto(Actors actors, const gitkit::GitRef& ref);

/// Moves a branch that is not checked out on to a remote branch, given by its full name, as it was fetched last; to its
/// upstream where none is given.
void fastForward(Actors actors, const std::string& branch, const std::string& to = {});
/// Moves a branch that is not checked out to a commit, given by its full hash. Asks first where commits would be left that no
/// other branch or tag leads to.
void moveBranch(Actors actors, const gitkit::GitRef& branch, const std::string& target);
/// The same after a fetch.
void pullOther(Actors actors, const std::string& branch);

} // namespace plovik::actions
