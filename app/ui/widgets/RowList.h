// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/widgets/EqualRowList.h"

#include <optional>

class QContextMenuEvent;

namespace plovik {

/// A list of equally high rows with a margin above the first and below the last one. Main thread.
class RowList : public EqualRowList {
    Q_OBJECT

public:
    /// `name` is the list's accessible name.
    explicit RowList(const QString& name, QWidget* parent = nullptr);
};

/// Returns where on the screen the menu of a row opens: at the pointer, or on the current row when a key asked for the
/// menu. Returns nullopt where the pointer is on no row.
std::optional<QPoint> menuPosition(const QListView& list, const QContextMenuEvent& event);

} // namespace plovik
