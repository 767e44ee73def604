// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

namespace plovik {

class SidebarModel;

/// Draws the sidebar's rows. Main thread.
class SidebarDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// `model` outlives the delegate.
    explicit SidebarDelegate(const SidebarModel& model, QObject* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    /// Tells the whole title of a row that has no other tip when there may be no room for it.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

private:
    void paintFixedItem(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void paintGroup(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void paintFolder(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void paintSubmodule(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void paintWorktree(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void paintRef(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;

    const SidebarModel& model_;
};

} // namespace plovik
