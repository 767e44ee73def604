// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/OwnCommand.h"
#include "app/store/actions/Actors.h"

#include <QString>

namespace plovik {

/// A command of the user's, and what it is run for.
struct OwnCommandRun {
    QString title;
    gitkit::OwnCommand command;
    bool asksFirst = false;
};

namespace actions {

/// Runs it, after a question if it asks. When it has printed anything, the log shows that. What it does to refs, stashes and
/// files that git knows can be undone.
void runOwnCommand(Actors actors, const OwnCommandRun& run);

} // namespace actions

} // namespace plovik
