// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

class QMenu;
class QWidget;

namespace plovik {

/// What can be done with a row of the timeline. The menu belongs to `parent`; its entries act through `store` on the row
/// as it was when the menu opened. Main thread.
QMenu* makeStepMenu(RepositoryStore& store, const TimelineRow& row, QWidget* parent);

} // namespace plovik
