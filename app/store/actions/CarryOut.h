// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"
#include "app/store/Drops.h"
#include "app/store/actions/Actors.h"

#include <vector>

namespace plovik::actions {

/// Does what a drop stands for, by the action that the menus have for it. `commits` are those that it picks. Main thread.
void carryOut(Actors actors, const Drop& drop, const std::vector<gitkit::Commit>& commits);

} // namespace plovik::actions
