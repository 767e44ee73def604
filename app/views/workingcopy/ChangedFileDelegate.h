#pragma once

#include <QStyledItemDelegate>

namespace plovik {

/// Draws a row of ChangedFilesModel: the status letter on its chip, then the path. Main thread.
class ChangedFileDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace plovik
