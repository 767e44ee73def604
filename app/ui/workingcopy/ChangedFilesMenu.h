// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

class QMenu;
class QWidget;

namespace plovik {

/// Returns the context menu of `files`, of which there is at least one. Its commands act on these files even if the
/// selection changes while it is open. `openTitle` names the editor. The caller owns the menu; `store` outlives it.
/// Main thread.
QMenu* makeChangedFilesMenu(RepositoryStore& store, const Staging::Files& files, const QString& openTitle,
                            QWidget* parent);

} // namespace plovik
