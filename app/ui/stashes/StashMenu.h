// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

class QMenu;
class QWidget;

namespace plovik {

/// What can be done with a stash. The menu belongs to `parent`; its entries act through `store` on the stash as it was
/// when the menu opened. Main thread.
QMenu* makeStashMenu(RepositoryStore& store, const gitkit::Stash& stash, QWidget* parent);

} // namespace plovik
