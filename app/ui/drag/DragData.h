// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/Drops.h"

#include <memory>
#include <optional>

class QMimeData;
class QString;
class QWidget;

namespace plovik {

class RepositoryStore;

// What is dragged inside one window. Main thread.

/// Returns the data of a drag, whose type says what is dragged. Nothing but this window can read it.
std::unique_ptr<QMimeData> dragData(const RepositoryStore& store, const Dragged& dragged);

/// Returns what is dragged; nullopt for data of other windows and of other applications.
std::optional<Dragged> draggedIn(const RepositoryStore& store, const QMimeData& data);

/// Drags it from `source` until it is let go, with `name` beside the pointer. Handles events meanwhile, so that the source
/// may be gone afterwards.
void drag(QWidget& source, const RepositoryStore& store, const Dragged& dragged, const QString& name);

} // namespace plovik
