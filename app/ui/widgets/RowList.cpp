// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/RowList.h"

#include <QContextMenuEvent>

namespace plovik {

RowList::RowList(const QString& name, QWidget* parent) : EqualRowList(parent)
{
    setAccessibleName(name);
    setViewportMargins(0, 6, 0, 6);
    // The margin is the list's own, not the viewport's.
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

std::optional<QPoint> menuPosition(const QListView& list, const QContextMenuEvent& event)
{
    if (event.reason() == QContextMenuEvent::Keyboard) {
        const QRect seen = list.viewport()->rect();
        const QRect row = list.visualRect(list.currentIndex()).intersected(seen);
        return list.viewport()->mapToGlobal(row.isValid() ? row.center() : seen.center());
    }
    if (!list.indexAt(event.pos()).isValid())
        return std::nullopt;
    return event.globalPos();
}

} // namespace plovik

#include "moc_RowList.cpp"
