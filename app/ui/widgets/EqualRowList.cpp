// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/EqualRowList.h"

#include "app/ui/widgets/FocusRing.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QScrollBar>
#include <QStylePainter>

#include <algorithm>
#include <utility>

namespace plovik {

EqualRowList::EqualRowList(QWidget* parent) : QListView(parent)
{
    giveFocusRing(*this);
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    setSelectionRectVisible(false);
}

void EqualRowList::setDragged(std::function<void(QPoint pressed)> begin)
{
    beginDrag_ = std::move(begin);
    setDragEnabled(true);
}

void EqualRowList::mousePressEvent(QMouseEvent* event)
{
    pressed_ = event->position().toPoint();
    QListView::mousePressEvent(event);
}

void EqualRowList::startDrag(Qt::DropActions)
{
    if (beginDrag_)
        beginDrag_(pressed_);
}

int EqualRowList::rowCount() const { return model() ? model()->rowCount(rootIndex()) : 0; }

int EqualRowList::rowAtHeight(int y) const
{
    const int height = std::max(rowHeight_, 1);
    const int below = y + verticalOffset();
    return below < 0 ? -1 : below / height;
}

QModelIndex EqualRowList::row(int number) const { return model()->index(number, modelColumn(), rootIndex()); }

QRect EqualRowList::visualRect(const QModelIndex& index) const
{
    layOutIfNeeded();
    if (!index.isValid() || rowHeight_ == 0 || index.row() >= rowCount())
        return {};
    return {0, index.row() * rowHeight_ - verticalOffset(), viewport()->width(), rowHeight_};
}

void EqualRowList::layOutIfNeeded() const { const_cast<EqualRowList*>(this)->executeDelayedItemsLayout(); }

QModelIndex EqualRowList::indexAt(const QPoint& point) const
{
    layOutIfNeeded();
    const int number = rowAtHeight(point.y());
    const bool isOnRow = rowHeight_ > 0 && number >= 0 && number < rowCount();
    return isOnRow && point.x() >= 0 && point.x() < viewport()->width() ? row(number) : QModelIndex();
}

// The base class would lay out later. This costs nothing, and others may ask for a place at once.

void EqualRowList::reset()
{
    QListView::reset();
    doItemsLayout();
}

void EqualRowList::rowsInserted(const QModelIndex& parent, int first, int last)
{
    QListView::rowsInserted(parent, first, last);
    doItemsLayout();
}

void EqualRowList::doItemsLayout()
{
    rowHeight_ = 0;
    if (rowCount() > 0) {
        QStyleOptionViewItem option;
        initViewItemOption(&option);
        const QModelIndex first = row(0);
        rowHeight_ = std::max(1, itemDelegateForIndex(first)->sizeHint(option, first).height());
    }
    // Not the next base class's, which goes through all rows.
    QAbstractItemView::doItemsLayout(); // NOLINT(bugprone-parent-virtual-call)
}

void EqualRowList::updateGeometries()
{
    const int seen = viewport()->height();
    verticalScrollBar()->setSingleStep(std::max(1, rowHeight_));
    verticalScrollBar()->setPageStep(seen);
    verticalScrollBar()->setRange(0, std::max(0, rowCount() * rowHeight_ - seen));
    QAbstractItemView::updateGeometries(); // NOLINT(bugprone-parent-virtual-call)
}

QModelIndex EqualRowList::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    Q_UNUSED(modifiers)
    executeDelayedItemsLayout();
    const int last = rowCount() - 1;
    if (last < 0)
        return {};
    if (!currentIndex().isValid())
        return row(0);
    const int page = std::max(1, viewport()->height() / rowHeight_ - 1);
    const int current = currentIndex().row();
    int wanted = current;
    switch (action) {
    case MoveUp:
    case MovePrevious:
        --wanted;
        break;
    case MoveDown:
    case MoveNext:
        ++wanted;
        break;
    case MovePageUp:
        wanted -= page;
        break;
    case MovePageDown:
        wanted += page;
        break;
    case MoveHome:
        wanted = 0;
        break;
    case MoveEnd:
        wanted = last;
        break;
    case MoveLeft:
    case MoveRight:
        break;
    }
    return row(std::clamp(wanted, 0, last));
}

void EqualRowList::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command)
{
    if (!selectionModel() || rowCount() == 0)
        return;
    const int first = std::max(0, rowAtHeight(rect.top()));
    const int last = std::min(rowAtHeight(rect.bottom()), rowCount() - 1);
    selectionModel()->select(first <= last ? QItemSelection(row(first), row(last)) : QItemSelection(), command);
}

void EqualRowList::paintEvent(QPaintEvent* event)
{
    executeDelayedItemsLayout();
    QStylePainter painter(viewport());
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const QStyle::State state = option.state;
    const bool isFocused = hasFocus() || viewport()->hasFocus();
    const QModelIndex hovered =
        viewport()->underMouse() ? indexAt(viewport()->mapFromGlobal(QCursor::pos())) : QModelIndex();
    const int last = std::min(rowAtHeight(event->rect().bottom()), rowCount() - 1);
    for (int number = std::max(0, rowAtHeight(event->rect().top())); number <= last; ++number) {
        const QModelIndex index = row(number);
        const bool isEnabled = (state & QStyle::State_Enabled) && (index.flags() & Qt::ItemIsEnabled);
        option.rect = visualRect(index);
        option.state = state;
        option.state.setFlag(QStyle::State_Enabled, isEnabled);
        option.state.setFlag(QStyle::State_Selected, selectionModel()->isSelected(index));
        option.state.setFlag(QStyle::State_HasFocus, isFocused && index == currentIndex());
        option.state.setFlag(QStyle::State_MouseOver, index == hovered);
        if (state & QStyle::State_Enabled)
            option.palette.setCurrentColorGroup(isEnabled ? QPalette::Normal : QPalette::Disabled);
        itemDelegateForIndex(index)->paint(&painter, option, index);
    }
}

} // namespace plovik

#include "moc_EqualRowList.cpp"
