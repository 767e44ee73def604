// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/actions/Actors.h"

namespace gitkit {
struct UndoStep;
} // namespace gitkit

namespace plovik {
class Undo;
} // namespace plovik

namespace plovik::actions {

// What a row of the timeline offers besides taking steps back. Main thread.

/// Asks, and then writes the files back as they were before the step.
void confirmRestoreFiles(Actors actors, const gitkit::UndoStep& step);
/// Asks for the name of a branch at the commit where HEAD stood before the step.
void newBranchBefore(Actors actors, const gitkit::UndoStep& step);
/// Asks, and then removes what is kept of the step for good.
void confirmForget(Actors actors, Undo& undo, const gitkit::UndoStep& step);

} // namespace plovik::actions
