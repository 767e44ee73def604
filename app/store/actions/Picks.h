// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"
#include "app/store/actions/Actors.h"

#include <QString>

#include <string>
#include <vector>

namespace plovik::actions {

// Making the changes of commits again on top of what is checked out, and taking them back. Main thread.

void cherryPick(Actors actors, const std::string& hash);
void revert(Actors actors, const std::string& hash);

/// The same for several commits, the newest first, or for one merge, about which it asks whose side it is seen from. Begins
/// nothing for what cannotPick() refuses.
void cherryPick(Actors actors, const std::vector<gitkit::Commit>& commits);
void revert(Actors actors, const std::vector<gitkit::Commit>& commits);

/// Returns a sentence that says why commits cannot be picked or reverted in one go; empty when they can.
QString cannotPick(const std::vector<gitkit::Commit>& commits);

} // namespace plovik::actions
