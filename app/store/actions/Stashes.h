// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Stash.h"
#include "app/store/actions/Actors.h"

#include <QString>

namespace plovik::actions {

void stashSave(Actors actors, const QString& message, gitkit::UntrackedFiles untracked);
void stashApply(Actors actors, const gitkit::Stash& stash, gitkit::StashUse use);
/// Asks, and then drops a stash.
void confirmDrop(Actors actors, const gitkit::Stash& stash);

} // namespace plovik::actions
