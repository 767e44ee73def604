// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/actions/Actors.h"

namespace plovik::actions {

void fetch(Actors actors);
void pull(Actors actors);
/// Pushes the current branch; where it has no upstream, to "origin" or else the first remote, which becomes it. Reports
/// when there is no branch or no remote.
void push(Actors actors);

} // namespace plovik::actions
