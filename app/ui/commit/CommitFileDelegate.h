// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CommitDetail.h"

#include <QStyledItemDelegate>

namespace plovik {

/// Draws a row of CommitFilesModel: the status letter, the path with a paler folder, and at the right the numbers of
/// added and removed lines. Main thread.
class CommitFileDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Where the triangles of the outermost folders begin.
    static constexpr int triangleLeft = 14;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

/// A path in two parts, its folder and its name; or a renaming in two parts, the common folder and what differs.
struct PathParts {
    QString folder; ///< ends with a slash; empty for the repository's own folder
    QString name;

    static PathParts of(const QString& path);
    static PathParts of(const QString& from, const QString& to);

    bool operator==(const PathParts&) const = default;
};
PathParts pathPartsOf(const gitkit::CommitFile& file);

/// Draws a path with a paler folder. The folder is shortened first, and the name only when the folder has no room left.
void paintPath(QPainter& painter, const QRect& area, const PathParts& path, const QFont& font);

} // namespace plovik
