// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/ScrollKeeper.h"

#include <QAbstractItemView>
#include <QScrollBar>

namespace plovik {

ScrollKeeper::ScrollKeeper(QAbstractItemView* view, KeyOf keyOf, IndexOf indexOf)
    : QObject(view), view_(view), keyOf_(std::move(keyOf)), indexOf_(std::move(indexOf))
{
    connect(view->verticalScrollBar(), &QScrollBar::valueChanged, this, &ScrollKeeper::note);
    connect(view->model(), &QAbstractItemModel::modelAboutToBeReset, this, [this] { isRestoring_ = true; });
}

void ScrollKeeper::note()
{
    if (isRestoring_)
        return;
    topKey_.clear();
    value_ = view_->verticalScrollBar()->value();
    if (value_ == 0)
        return;
    const QModelIndex top = view_->indexAt(QPoint(1, 0));
    if (!top.isValid())
        return;
    topKey_ = keyOf_(top);
    topOffset_ = view_->visualRect(top).top();
}

void ScrollKeeper::restore()
{
    // Has the view lay out its rows, unless it has done so since they changed: that takes a while when there are many.
    view_->indexAt(QPoint());
    QScrollBar* bar = view_->verticalScrollBar();
    bar->setValue(value_);
    const QModelIndex top = topKey_.empty() ? QModelIndex() : indexOf_(topKey_);
    if (const QRect now = top.isValid() ? view_->visualRect(top) : QRect(); now.isValid())
        bar->setValue(bar->value() + now.top() - topOffset_);
    isRestoring_ = false;
    note();
}

} // namespace plovik

#include "moc_ScrollKeeper.cpp"
