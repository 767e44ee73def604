// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/actions/Actors.h"

#include <QString>

namespace plovik::actions {

// A rebase that has stopped behind a commit so that it can be changed.

/// Returns the commit that git has stopped behind, as it is shown; empty while it has not stopped so.
QString editedCommit(const Snapshot& snapshot);
/// Returns whether HEAD is still that commit, so that what is staged becomes a part of it.
bool canBecomePart(const Snapshot& snapshot);
/// Puts the changes of the commit back into the files, so that several commits can be made of them. Does nothing unless
/// canBecomePart().
void takeApart(Actors actors);

} // namespace plovik::actions
