// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/ChangedFileDelegate.h"

#include "app/store/ShownText.h"
#include "app/ui/commit/CommitFileDelegate.h"
#include "app/ui/commit/StatusChip.h"
#include "app/ui/widgets/ControlPainting.h"
#include "app/ui/widgets/FileListTools.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/workingcopy/ChangedFilesModel.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace plovik {

namespace {

constexpr int rowInset = 6;
constexpr int boxLeft = 16;
constexpr int wordsGap = 10;

int chipLeft() { return boxLeft + checkBoxSize() + 8; }
int pathLeft() { return chipLeft() + statusChipSize() + 8; }

int indentOf(const QModelIndex& index) { return index.data(FileRowsModel::depthRole).toInt() * folderIndent; }

QRect squareIn(const QRect& row, int left, int size)
{
    return {row.left() + left, row.top() + (row.height() - size) / 2, size, size};
}

} // namespace

bool ChangedFileDelegate::isOnCheckBox(const QRect& row, const QModelIndex& index, const QPoint& point)
{
    const int left = row.left() + indentOf(index);
    return row.contains(point) && point.x() >= left + rowInset && point.x() < left + chipLeft() - 2;
}

void ChangedFileDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const auto& model = static_cast<const ChangedFilesModel&>(*index.model());
    const QRect& row = option.rect;
    const int indent = indentOf(index);
    const auto check = static_cast<Qt::CheckState>(index.data(Qt::CheckStateRole).toInt());
    const RowMirror mirror(option);
    paintRowBackground(*painter, row, option, rowInset);
    const QRectF box = mirror(QRectF(squareIn(row, boxLeft + indent, checkBoxSize())));
    paintCheckBox(*painter, box.toRect(), check, option.state & QStyle::State_Enabled, false);
    if (model.isFolder(index)) {
        paintFolder(*painter, row, triangleLeft + indent, model, index, option);
        return;
    }
    const gitkit::FileChange& file = model.file(index);
    paintStatusChip(*painter, squareIn(row, chipLeft() + indent, statusChipSize()), file.statusCode());
    PathParts path = PathParts::of(shownText(file.path));
    if (file.originalPath)
        path = PathParts::of(shownText(*file.originalPath), shownText(file.path));
    if (model.isTree())
        path.folder.clear();
    QRect area = row.adjusted(pathLeft() + indent, 0, -rowInset - 6, 0);
    if (const QString words = model.conflictWords(file); !words.isEmpty()) {
        // The path has at least half of the room.
        const int pathWidth = textWidth(path.folder + path.name, option.font);
        const int room = area.width() - std::min(pathWidth, area.width() / 2) - wordsGap;
        const int width = std::clamp(textWidth(words, option.font) + 1, 0, std::max(room, 0)); // which is rounded
        paintText(*painter, QRect(area.right() + 1 - width, area.top(), width, area.height()), words, option.font,
                  Theme::current().secondaryText);
        area.adjust(0, 0, -width - wordsGap, 0);
    }
    paintPath(*painter, area, path, option.font);
}

QSize ChangedFileDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    Q_UNUSED(index)
    return {pathLeft(), std::max(listRowHeight, QFontMetrics(option.font).height() + 8)};
}

bool ChangedFileDelegate::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                                      const QModelIndex& index)
{
    Q_UNUSED(event)
    Q_UNUSED(model)
    Q_UNUSED(option)
    Q_UNUSED(index)
    return false;
}

} // namespace plovik

#include "moc_ChangedFileDelegate.cpp"
