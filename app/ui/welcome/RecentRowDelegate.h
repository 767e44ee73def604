// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

namespace plovik {

/// Draws a recent repository: a folder, its name, and quietly below it where it is.
class RecentRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// Of an item: the folder that the repository is in, as shown. The name is the ordinary text.
    static constexpr int placeRole = Qt::UserRole;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace plovik
