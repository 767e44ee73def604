// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/Verb.h"

#include <QString>

namespace plovik {

class Changes;
class Snapshot;

/// Returns a sentence that says why a change cannot begin: another one is in its way, or git would refuse it in the state
/// that the repository is in. Returns an empty string when it can. What depends on more than this, such as files that
/// stand in the way of a checkout, is for git to say. Main thread.
QString obstacle(const Changes& changes, const Snapshot& now, Verb verb);

} // namespace plovik
