// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

namespace plovik {

/// Draws a recent repository: the picture of a folder, the name, and below it the place in a quiet colour.
class RecentRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// The role of the text that says in which folder the repository is. The name is the display text.
    static constexpr int placeRole = Qt::UserRole;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace plovik
