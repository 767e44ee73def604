// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/Drops.h"
#include "app/store/readers/ActionPreviews.h"

#include <QString>

namespace plovik {

class Snapshot;

// What is said of a drop before it happens. Main thread.

/// Returns one line, such as: Merge “topic” into “main”. Empty for one that does nothing.
QString dropWords(const Drop& drop, const Snapshot& now);

/// Returns what a preview tells, in lines; empty where it tells nothing.
QString previewWords(const DropPreview& preview);

/// Returns whether a preview shows that the drop would change nothing, or would be refused.
bool isInVain(Drop::Act act, const DropPreview& preview);

} // namespace plovik
