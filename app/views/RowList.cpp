// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/views/RowList.h"

namespace plovik {

RowList::RowList(const QString& name, QWidget* parent) : QListView(parent)
{
    setAccessibleName(name);
    setFrameShape(QFrame::NoFrame);
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    setSelectionRectVisible(false);
    setViewportMargins(0, 6, 0, 6);
    // The margin is the list's own, not the viewport's.
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

} // namespace plovik
