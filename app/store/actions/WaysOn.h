// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/BranchChange.h"
#include "app/store/Changes.h"
#include "app/store/actions/Actors.h"

#include <QString>

#include <functional>
#include <string>
#include <vector>

/// Questions that offer a way on where git refuses an action. Main thread.
namespace plovik::waysOn {

/// How an action goes on where changes of files that git knows are in its way.
struct StashOffer {
    QString message;                  ///< that the stash gets
    std::vector<std::string> listing; ///< git's command that lists the files which the action writes
    /// Begins the change that stashes; empty where that needs nothing but Changes::run().
    std::function<void(Change)> begin = {};
};

/// Returns the change with such an offer: when git refuses it for changed files, the user is asked whether to stash them,
/// go on, and apply them again. All of that is one change and one step of undo.
Change offeringStash(Actors actors, Change change, StashOffer offer);

/// Returns the change with a quiet word where it has succeeded without moving HEAD.
Change tellingUpToDate(WindowState& window, Change change);

/// Asks how a pull joins both sides when the branches have diverged. `pull` begins it, and may have the choice
/// remembered.
using PullAgain = std::function<void(gitkit::PullBy how, bool isRemembered)>;
void askHowToPull(Actors actors, const Failure& failure, PullAgain pull);

} // namespace plovik::waysOn
