// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

class QMenu;
class QWidget;

namespace plovik {

/// What can be done with a submodule of the sidebar. The menu belongs to `parent`; its entries act through `store` on the
/// submodule as it was when the menu opened. Main thread.
QMenu* makeSubmoduleMenu(RepositoryStore& store, const gitkit::Submodule& submodule, QWidget* parent);

/// The same for the heading of their group.
QMenu* makeSubmodulesMenu(RepositoryStore& store, QWidget* parent);

} // namespace plovik
