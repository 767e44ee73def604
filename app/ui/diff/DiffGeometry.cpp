// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffGeometry.h"

#include "app/ui/diff/ShownDiff.h"
#include "app/ui/widgets/ControlPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QFontMetrics>

#include <algorithm>

namespace plovik {

namespace {

constexpr int endGap = 10;
constexpr int leastNoteWidth = 80;

} // namespace

DiffGeometry::DiffGeometry(const ShownDiff& diff) : diff_(diff) { measure(); }

void DiffGeometry::measure()
{
    constexpr int aroundTick = 4;
    const bool hasTicks = diff_.content().use == DiffContent::Use::split;
    metrics_ =
        DiffMetrics::of(diff_.document(), diff_.lines(), wrapWidth(), hasTicks ? checkBoxSize() + 2 * aroundTick : 0);
    setWidth(width_);
}

void DiffGeometry::setWidth(int width)
{
    width_ = width;
    if (metrics_.columnsIn(wrapWidth()) != metrics_.wrapColumns)
        metrics_.layOut(diff_.document(), diff_.lines(), wrapWidth());
    insetTop_ = barHeight() + notesHeight(diff_.notes().above, width);
}

int DiffGeometry::wrapWidth() const { return diff_.wraps() ? cellWidth() : 0; }

void DiffGeometry::setInsetHeight(int height) { insetHeight_ = height; }

int DiffGeometry::barHeight() const { return diff_.content().title.isEmpty() ? 0 : DiffMetrics::barHeight(); }

QRect DiffGeometry::noteRoom(int top, int width)
{
    return {DiffMetrics::margin, top, std::max(leastNoteWidth, width - 2 * DiffMetrics::margin), 10000};
}

int DiffGeometry::notesHeight(const QStringList& notes, int width)
{
    if (notes.isEmpty())
        return 0;
    const QFontMetrics metrics(Theme::font());
    int height = noteGap;
    for (const QString& note : notes)
        height += metrics.boundingRect(noteRoom(0, width), Qt::TextWordWrap, note).height() + noteGap;
    return height;
}

int DiffGeometry::heightFor(int width, int insetHeight) const
{
    return barHeight() + notesHeight(diff_.notes().above, width) + insetHeight + metrics_.total() +
           notesHeight(diff_.notes().below, width) + endGap;
}

int DiffGeometry::hiddenWidth(int width) const
{
    if (diff_.document().rowCount() == 0 || diff_.wraps())
        return 0;
    const int wanted =
        metrics_.codeLeft + static_cast<int>(diff_.document().longestLine() * metrics_.cell) + 2 * DiffMetrics::margin;
    return std::max(0, wanted - (diff_.lines().areSideBySide() ? width / 2 : width));
}

int DiffGeometry::cellWidth() const { return diff_.lines().areSideBySide() ? width_ / 2 : width_; }

int DiffGeometry::leftOf(DiffSide side) const
{
    return side == DiffSide::after && diff_.lines().areSideBySide() ? width_ / 2 : 0;
}

DiffRowPainter DiffGeometry::rowPainter(const DiffFound* found, const QRect& exposed) const
{
    const bool hasTicks = diff_.content().use == DiffContent::Use::split;
    return {diff_.document(),
            metrics_,
            {cellWidth(), offset_, found, exposed, hasTicks ? &diff_.content().inFirst : nullptr}};
}

QRect DiffGeometry::lineOf(int row, qsizetype source) const
{
    const QRect area = rowRect(row);
    const int height = std::min(area.height(), metrics_.lineHeight);
    return {area.left(), area.top() + rowPainter(nullptr).stripOf(row, source) * height, area.width(), height};
}

QRect DiffGeometry::rowRect(int row) const
{
    const DiffSide side = diff_.document().row(row).side;
    const int line = diff_.lines().lineOf(row);
    if (side != DiffSide::both)
        return cellAt(line, side).area;
    return {0, rowsTop() + metrics_.top(line), width_, metrics_.height(line)};
}

DiffCell DiffGeometry::cellAt(int line, DiffSide side) const
{
    const DiffLines& lines = diff_.lines();
    const QRect whole(0, rowsTop() + metrics_.top(line), width_, metrics_.height(line));
    const int row = lines.rowAt(line, DiffSide::both);
    if (!lines.areSideBySide() || diff_.document().row(row).kind == DiffDocument::Kind::hunk)
        return {line, row, DiffSide::both, whole};
    const int half = width_ / 2;
    if (side == DiffSide::after)
        return {line, lines.rowAt(line, side), side, whole.adjusted(half, 0, 0, 0)};
    return {line, lines.rowAt(line, DiffSide::before), DiffSide::before, whole.adjusted(0, 0, half - width_, 0)};
}

DiffSide DiffGeometry::sideAt(int x) const
{
    if (!diff_.lines().areSideBySide())
        return DiffSide::both;
    return x < width_ / 2 ? DiffSide::before : DiffSide::after;
}

int DiffGeometry::rowNear(QPoint point) const
{
    const int line = lineAt(point.y());
    return line < 0 ? -1 : diff_.lines().nearestRow(line, sideAt(point.x()));
}

int DiffGeometry::rowAt(QPoint point) const { return rowsArea().contains(point) ? rowNear(point) : -1; }

DiffPosition DiffGeometry::positionAt(QPoint point, DiffSide side) const
{
    const int line = lineAt(point.y());
    const int row = diff_.lines().rowAt(line, side);
    if (row < 0 || !diff_.document().row(row).isCode())
        return {line, 0};
    return {line,
            rowPainter(nullptr).sourceAt(row, {point.x() - leftOf(side), point.y() - rowsTop() - metrics_.top(line)})};
}

} // namespace plovik
