// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/CommitFileDelegate.h"

#include "app/ui/commit/CommitFilesModel.h"
#include "app/ui/commit/StatusChip.h"
#include "app/ui/diff/ShownLine.h"
#include "app/ui/widgets/FileListTools.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QLocale>
#include <QPainter>

#include <algorithm>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

constexpr int rowInset = 8;
constexpr int sideInset = 14;
constexpr int gap = 8;
constexpr int countGap = 6;

int pathLeft() { return sideInset + statusChipSize() + 8; }

QFont countFont() { return Theme::font(-1); }

/// Returns the width of a signed number with as many digits as `most`; 0 when `most` is 0.
int countWidth(int most, const QFont& font)
{
    if (most <= 0)
        return 0;
    QString widest = QLocale().toString(most);
    for (QChar& character : widest)
        character = character.isDigit() ? u'0' : character;
    return textWidth(u'+' + widest, font);
}

/// Returns a number behind its sign, which the mark keeps there in a mirrored window, too.
QString signedCount(QChar sign, int count)
{
    constexpr char16_t leftToRightMark = u'\u200e';
    return QString(leftToRightMark) + sign + QLocale().toString(count);
}

/// Draws the counts at the right of `area`, each kind in its own column, and returns the width that they take.
int paintCounts(QPainter& painter, const QRect& area, const CommitFilesModel& model, const QModelIndex& index)
{
    const gitkit::ChangeCounts* const counts = model.counts(index);
    if (!counts)
        return 0;
    const Theme& theme = Theme::current();
    const QFont font = countFont();
    const int removedWidth = countWidth(model.mostRemoved(), font);
    const int addedWidth = countWidth(model.mostAdded(), font);
    const int width = addedWidth + removedWidth + (addedWidth > 0 && removedWidth > 0 ? countGap : 0);
    if (!counts->added || !counts->removed) {
        const QString binary = CommitFileDelegate::tr("binary");
        paintText(painter, area, binary, font, theme.secondaryText, Qt::AlignRight, Qt::ElideNone);
        return std::max(width, textWidth(binary, font));
    }
    if (*counts->removed > 0) {
        paintText(painter, area, signedCount(u'−', *counts->removed), font, theme.statusDeleted, Qt::AlignRight,
                  Qt::ElideNone);
    }
    if (*counts->added > 0) {
        const int right = removedWidth > 0 ? removedWidth + countGap : 0;
        paintText(painter, area.adjusted(0, 0, -right, 0), signedCount(u'+', *counts->added), font, theme.statusAdded,
                  Qt::AlignRight, Qt::ElideNone);
    }
    return width;
}

} // namespace

PathParts pathPartsOf(const gitkit::CommitFile& file)
{
    const QString path = ShownLine::of(file.path).shown;
    return file.originalPath ? PathParts::of(ShownLine::of(*file.originalPath).shown, path) : PathParts::of(path);
}

void paintPath(QPainter& painter, const QRect& area, const PathParts& path, const QFont& font)
{
    const Theme& theme = Theme::current();
    const int nameWidth = textWidth(path.name, font);
    const int folderRoom = std::max(0, area.width() - nameWidth);
    const QString folder = QFontMetrics(font).elidedText(path.folder, Qt::ElideMiddle, folderRoom);
    const int folderWidth = textWidth(folder, font);
    const int before = std::min(folderWidth, folderRoom);
    QRect place = placeInRow(QRectF(area)).toRect();
    // A path is read from left to right everywhere, and stands at the side where rows begin.
    if (painter.layoutDirection() == Qt::RightToLeft)
        place.setLeft(std::max(place.left(), place.right() + 1 - before - nameWidth));
    painter.save();
    painter.setLayoutDirection(Qt::LeftToRight);
    const RowMirror plain(place, Qt::LeftToRight);
    if (folderWidth <= folderRoom)
        paintText(painter, place, folder, font, theme.secondaryText, Qt::AlignLeft, Qt::ElideNone);
    paintText(painter, place.adjusted(before, 0, 0, 0), path.name, font, theme.text, Qt::AlignLeft, Qt::ElideMiddle);
    painter.restore();
}

PathParts PathParts::of(const QString& path)
{
    const qsizetype name = path.lastIndexOf(u'/') + 1;
    return {path.left(name), path.mid(name)};
}

PathParts PathParts::of(const QString& from, const QString& to)
{
    const auto differ = std::ranges::mismatch(from, to);
    const qsizetype same = differ.in1 - from.begin();
    const qsizetype folder = same > 0 ? from.lastIndexOf(u'/', same - 1) + 1 : 0;
    return {from.left(folder), from.mid(folder) + u" → "_s + to.mid(folder)};
}

void CommitFileDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const auto& model = static_cast<const CommitFilesModel&>(*index.model());
    const QRect& row = option.rect;
    const int indent = model.row(index).depth * folderIndent;
    const RowMirror mirror(option);
    paintRowBackground(*painter, row, option, rowInset);
    if (model.isFolder(index)) {
        paintFolder(*painter, row, triangleLeft + indent, model, index, option);
        return;
    }
    const gitkit::CommitFile& file = model.file(index);
    const int size = statusChipSize();
    const QRect chip(row.left() + sideInset + indent, row.top() + (row.height() - size) / 2, size, size);
    paintStatusChip(*painter, chip, shownStatus(file));
    QRect area = row.adjusted(pathLeft() + indent, 0, -sideInset, 0);
    if (const int counts = paintCounts(*painter, area, model, index); counts > 0)
        area.setRight(area.right() - counts - gap);
    PathParts path = pathPartsOf(file);
    if (model.isTree())
        path.folder.clear();
    paintPath(*painter, area, path, option.font);
}

QSize CommitFileDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    return {pathLeft(), std::max(listRowHeight - 2, QFontMetrics(option.font).height() + 8)};
}

} // namespace plovik

#include "moc_CommitFileDelegate.cpp"
