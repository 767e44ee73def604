// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Submodule.h"
#include "app/store/actions/Actors.h"

#include <QString>

#include <vector>

// What can be done with the repositories inside a working tree. Main thread.
namespace plovik::actions {

/// Returns a few words for the state of a submodule.
QString shownState(gitkit::SubmoduleState state);

/// Shows its window.
void openSubmodule(Actors actors, const gitkit::Submodule& submodule);
/// Returns a sentence that says why it cannot be opened; empty when it can.
QString whyNotOpened(const gitkit::Submodule& submodule);

/// Initialises submodules and checks out their recorded commits. Asks first where commits would be left on no branch.
void updateSubmodules(Actors actors, const std::vector<gitkit::Submodule>& submodules);

} // namespace plovik::actions
