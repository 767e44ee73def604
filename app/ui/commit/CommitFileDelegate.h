// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

namespace plovik {

/// Draws a row of CommitFilesModel: the letter, the path with its folder quiet, and at the right how many lines come
/// and go. Main thread.
class CommitFileDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

/// A path, or the way from one to another, in two parts: the folder that is common, and what tells more.
struct PathParts {
    QString folder; ///< with its final slash; empty at the top
    QString name;

    static PathParts of(const QString& path);
    static PathParts of(const QString& from, const QString& to);

    bool operator==(const PathParts&) const = default;
};

} // namespace plovik
