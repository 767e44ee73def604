// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/OperationInProgress.h"
#include "app/store/actions/Actors.h"

namespace plovik::actions {

// Going on or back from where git stopped. Without an operation in progress nothing happens.

/// Whether git would take a step now: there are no conflicts left, and nothing runs that holds it up.
bool canContinueOperation(const Actors& actors);
/// Goes on. A message that the user typed is recorded first when there is something to record; otherwise git takes the
/// one that it prepared.
void continueOperation(Actors actors);
void skipOperation(Actors actors);
/// Asks first when work would be lost.
void abortOperation(Actors actors);
/// Marks the commit that a bisect has checked out.
void bisect(Actors actors, gitkit::BisectMark mark);
void resetBisect(Actors actors);

} // namespace plovik::actions
