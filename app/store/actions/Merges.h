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

/// Moves a branch that is not checked out on to its upstream, as it was fetched last.
void fastForward(Actors actors, const std::string& branch);
/// The same after a fetch.
void pullOther(Actors actors, const std::string& branch);

} // namespace plovik::actions
