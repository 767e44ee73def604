// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/OperationInProgress.h"
#include "app/store/actions/Actors.h"

#include <QString>

namespace plovik::actions {

// Going on or back from where git stopped. Without an operation in progress nothing happens.

/// Returns whether the operation can go on: no conflicts are left and no running change prevents it.
bool canContinueOperation(const Actors& actors);
/// Continues the operation. Commits first with a message that the user typed, when there is something to commit;
/// otherwise git takes its prepared message.
void continueOperation(Actors actors);
void skipOperation(Actors actors);
/// Asks whether to skip the commit at which the operation has stopped, because it would change nothing.
void askToSkip(Actors actors, const QString& sentence);
/// Aborts the operation. Asks first when work would be lost.
void abortOperation(Actors actors);
/// Marks the commit that the bisect has checked out.
void bisect(Actors actors, gitkit::BisectMark mark);
void resetBisect(Actors actors);

} // namespace plovik::actions
