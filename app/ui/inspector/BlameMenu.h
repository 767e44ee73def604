// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMenu;

namespace plovik {

class BlameList;

/// What can be done with the current line of a blame and with those that are selected. The menu belongs to the list. Its
/// entries do nothing once other lines are shown.
QMenu* makeBlameMenu(BlameList& list);

} // namespace plovik
