// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QAbstractItemView;
class QLineEdit;
class QPainter;
class QRect;
class QStyleOptionViewItem;

namespace plovik {

class FileRowsModel;
class IconButton;

/// What a list of files has beside its rows: a button that shows it as a tree, a button and the key "/" that open a field
/// in which it is filtered, and the keys and clicks that fold folders. Escape in the field shows all files again. The
/// tree is a setting for all lists. Main thread.
class FileListTools : public QObject {
    Q_OBJECT

public:
    /// The list has a FileRowsModel.
    /// `triangleLeft` is where the triangles of the outermost folders begin in their rows.
    FileListTools(QAbstractItemView* list, int triangleLeft);

    // To be placed by the view around the list, which takes ownership. The field is hidden until it is wanted.
    IconButton* treeButton() const { return tree_; }
    IconButton* filterButton() const { return filter_; }
    QLineEdit* field() const { return field_; }

    void openFilter();
    void closeFilter();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool handleKey(int key);
    bool handleClick(const QPoint& point, bool isDouble);

    QAbstractItemView* list_;
    FileRowsModel* model_;
    int triangleLeft_;
    IconButton* tree_;
    IconButton* filter_;
    QLineEdit* field_;
};

/// By how much the rows inside a folder are set in, for each folder around them, in pixels.
inline constexpr int folderIndent = 16;
/// Draws a folder's triangle and its name, from `left` on.
void paintFolder(QPainter& painter, const QRect& row, int left, const FileRowsModel& model, const QModelIndex& index,
                 const QStyleOptionViewItem& option);

} // namespace plovik
