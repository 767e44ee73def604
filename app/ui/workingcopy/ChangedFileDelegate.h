// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

namespace plovik {

/// Draws a row of ChangedFilesModel: its check box, the status letter on its chip, then the path. Main thread.
class ChangedFileDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Returns whether a click at `point` means the check box. The area is larger than the box, so that it is easy to
    /// hit.
    static bool isOnCheckBox(const QRect& row, const QModelIndex& index, const QPoint& point);
    /// Where the triangles of the outermost folders begin.
    static constexpr int triangleLeft = 37;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    /// Does nothing, since the list handles clicks and keys itself.
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;
};

} // namespace plovik
