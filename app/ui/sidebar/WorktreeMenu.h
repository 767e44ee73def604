// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

class QMenu;
class QWidget;

namespace plovik {

/// What can be done with a worktree of the sidebar. The menu belongs to `parent`; its entries act through `store` on the
/// worktree as it was when the menu opened. Main thread.
QMenu* makeWorktreeMenu(RepositoryStore& store, const gitkit::Worktree& tree, QWidget* parent);

/// The same for the heading of their group.
QMenu* makeWorktreesMenu(RepositoryStore& store, QWidget* parent);

} // namespace plovik
