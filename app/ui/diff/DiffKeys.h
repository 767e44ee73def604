// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QKeyEvent;

namespace plovik {

class DiffController;

/// Returns whether a key belongs to a diff with the focus even where a menu has it too, as single letters do.
bool isDiffKey(const QKeyEvent& event);
/// Does what a key means in a diff. `page` is how many lines are in sight. Returns whether the key means anything.
bool handleDiffKey(DiffController& controller, const QKeyEvent& event, int page);

} // namespace plovik
