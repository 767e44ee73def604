// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/merge/MergePainter.h"

#include "app/settings/CodeFont.h"
#include "app/ui/diff/ShownLine.h"
#include "app/ui/diff/WordMarks.h"
#include "app/ui/diff/syntax/FileSyntax.h"
#include "app/ui/diff/syntax/SyntaxFormats.h"
#include "app/ui/merge/MergeColors.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QPainter>
#include <QTextLayout>

#include <algorithm>

namespace plovik {

namespace {

using gitkit::LineSpan;
using gitkit::MergeSegment;
using gitkit::MergeSide;
using Choice = gitkit::MergeChoice;
using Kind = MergeSegment::Kind;

/// Longer lines are cut where they are drawn: nobody sees their end.
constexpr std::size_t longestDrawn = 4000;
constexpr int edgeWidth = 3;
constexpr float wordShare = 0.34F;

std::string_view drawnPart(std::string_view line)
{
    if (line.ends_with('\n'))
        line.remove_suffix(1);
    return line.substr(0, longestDrawn);
}

} // namespace

bool isRefusable(const MergeSegment& segment)
{
    return segment.kind == Kind::changedLeft || segment.kind == Kind::changedRight || segment.kind == Kind::changedBoth;
}

MergeSide refusalSide(const MergeSegment& segment)
{
    return segment.kind == Kind::changedRight ? MergeSide::right : MergeSide::left;
}

void MergePainter::paintSegments() const
{
    if (geometry_.count() == 0)
        return;
    const std::vector<Column> columns = geometry_.columns();
    const int height = geometry_.viewport().height();
    for (std::size_t index = geometry_.segmentAt(geometry_.fromViewport(geometry_.headHeight()));
         index < geometry_.count() && geometry_.toViewport(geometry_.top(index)) <= height; ++index)
    {
        for (const Column& column : columns)
            paintSegment(index, column);
        if (isRefusable(result_.sides().segments[index]))
            paintRefusal(index);
    }
    painter_.setClipping(false);
    for (const Column& column : columns) {
        if (column.left > 0)
            painter_.fillRect(column.left, 0, 1, height, Theme::current().separator);
    }
}

void MergePainter::paintNames(const MergeNames& names) const
{
    const Theme& theme = Theme::current();
    constexpr int dot = 8;
    for (const Column& column : geometry_.columns()) {
        const QRect area(column.left, 0, column.width, geometry_.headHeight());
        painter_.fillRect(area, theme.bars);
        painter_.fillRect(area.left(), area.bottom(), area.width(), 1, theme.separator);
        painter_.setRenderHint(QPainter::Antialiasing);
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(mergeColors::strong(column.side));
        painter_.drawEllipse(area.left() + MergeGeometry::gap, area.center().y() - dot / 2, dot, dot);
        painter_.setRenderHint(QPainter::Antialiasing, false);
        const QString& name = column.side == MergeSide::left    ? names.left
                              : column.side == MergeSide::right ? names.right
                                                                : names.base;
        paintText(painter_, area.adjusted(MergeGeometry::gap + dot + 6, 0, -MergeGeometry::gap, 0), name,
                  Theme::font(-1, QFont::DemiBold), theme.text);
    }
}

/// Returns whether the lines of a side are not in the result.
bool MergePainter::isLeftOut(std::size_t segment, MergeSide side) const
{
    const Choice choice = result_.pieces()[segment].choice;
    return choice == Choice::none || choice == Choice::base || (choice == Choice::left && side == MergeSide::right) ||
           (choice == Choice::right && side == MergeSide::left);
}

QColor MergePainter::backgroundOf(std::size_t segment, MergeSide side) const
{
    const Kind kind = result_.sides().segments[segment].kind;
    const bool isChange = side != MergeSide::base && (kind == Kind::conflict || kind == Kind::changedBoth ||
                                                      (kind == Kind::changedLeft && side == MergeSide::left) ||
                                                      (kind == Kind::changedRight && side == MergeSide::right));
    if (!isChange)
        return {};
    return isLeftOut(segment, side) ? Theme::current().gutter : mergeColors::tint(side);
}

void MergePainter::paintSegment(std::size_t index, const Column& column) const
{
    const LineSpan& lines = result_.sides().segments[index].on(column.side);
    const int lineHeight = geometry_.lineHeight();
    const int top = geometry_.toViewport(geometry_.top(index) + geometry_.stripHeight(index));
    const QRect area(column.left, top, column.width, static_cast<int>(geometry_.rows(index)) * lineHeight);
    painter_.setClipRect(area & QRect(QPoint(), geometry_.viewport()));
    const int filled = static_cast<int>(lines.count) * lineHeight;
    const QColor background = backgroundOf(index, column.side);
    if (background.isValid())
        painter_.fillRect(area.left(), area.top(), area.width(), filled, background);
    if (filled < area.height()) // the other side has more
        painter_.fillRect(area.adjusted(0, filled, 0, 0), QBrush(Theme::current().separator, Qt::BDiagPattern));
    if (background.isValid())
        painter_.fillRect(area.left(), area.top(), edgeWidth, area.height(), mergeColors::strong(column.side));
    const auto first = static_cast<std::size_t>(std::max(0, (geometry_.headHeight() - top) / lineHeight));
    for (std::size_t row = first; row < lines.count; ++row) {
        const int y = top + static_cast<int>(row) * lineHeight;
        if (y > geometry_.viewport().height())
            break;
        paintLine(index, column, row, y);
    }
    if (look_.current == index && geometry_.conflictNumber(index) == 0) {
        painter_.setPen(QPen(Theme::current().accent, 2));
        painter_.setBrush(Qt::NoBrush);
        painter_.drawRect(area.adjusted(1, 1, -1, -1));
    }
}

void MergePainter::paintLine(std::size_t index, const Column& column, std::size_t row, int y) const
{
    const Theme& theme = Theme::current();
    const MergeSegment& segment = result_.sides().segments[index];
    const std::size_t number = segment.on(column.side).first + row;
    const std::string_view bytes = result_.sides().text(column.side).line(number);
    const ShownLine line = ShownLine::of(drawnPart(bytes), look_.tabWidth);

    QList<QTextLayout::FormatRange> formats;
    if (const auto& syntax = syntax_[static_cast<std::size_t>(column.side)]) {
        const std::string_view whole = bytes.ends_with('\n') ? bytes.substr(0, bytes.size() - 1) : bytes;
        appendSyntaxFormats(formats, syntax->line(static_cast<int>(number) + 1, whole), line, 0, line.shown.size());
    }
    QTextLayout layout(line.shown, CodeFont::current());
    layout.setFormats(formats);
    layout.beginLayout();
    const QTextLine shaped = layout.createLine();
    layout.endLayout();

    const int lineHeight = geometry_.lineHeight();
    const int codeLeft = column.left + geometry_.numberWidth();
    const double x = codeLeft - look_.scrolledSideways;
    painter_.save();
    const int top = std::max(y, geometry_.headHeight());
    painter_.setClipRect(
        QRect(codeLeft, top, column.width - geometry_.numberWidth(), std::max(0, y + lineHeight - top)));
    // What differs from the line in the same place on the other side.
    const MergeSide other = column.side == MergeSide::left ? MergeSide::right : MergeSide::left;
    if (segment.kind == Kind::conflict && column.side != MergeSide::base && row < segment.on(other).count) {
        const std::string_view opposite = result_.sides().text(other).line(segment.on(other).first + row);
        for (const TextRange& range : wordMarks(textOf(drawnPart(opposite)), line.source).added) {
            const double from = x + shaped.cursorToX(static_cast<int>(line.toShown(range.begin)));
            const double to = x + shaped.cursorToX(static_cast<int>(line.toShown(range.end)));
            painter_.fillRect(QRectF(from, y + 1, to - from, lineHeight - 2),
                              Theme::mixed(theme.content, mergeColors::strong(column.side), wordShare));
        }
    }
    const bool isOut = backgroundOf(index, column.side) == theme.gutter;
    painter_.setPen(isOut ? theme.secondaryText : theme.text);
    layout.draw(&painter_, QPointF(x, y + (lineHeight - shaped.height()) / 2));
    painter_.restore();

    painter_.setFont(CodeFont::current());
    painter_.setPen(theme.gutterText);
    painter_.drawText(QRect(column.left, y, geometry_.numberWidth() - MergeGeometry::gap, lineHeight),
                      Qt::AlignRight | Qt::AlignVCenter, QString::number(number + 1));
}

void MergePainter::paintRefusal(std::size_t index) const
{
    const Theme& theme = Theme::current();
    const MergeSegment& segment = result_.sides().segments[index];
    const QRectF area = geometry_.refusalRect(index, refusalSide(segment));
    painter_.setClipRect(QRect(0, geometry_.headHeight(), geometry_.viewport().width(), geometry_.roomHeight()));
    painter_.save();
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setPen(QPen(theme.controlBorder, 1));
    painter_.setBrush(theme.control);
    painter_.drawRoundedRect(area.adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    painter_.setPen(QPen(theme.text, 1.4, Qt::SolidLine, Qt::RoundCap));
    painter_.translate(area.center());
    constexpr double reach = 3.2;
    if (result_.pieces()[index].choice == Choice::base) { // a plus: take it after all
        painter_.drawLine(QPointF(-reach, 0), QPointF(reach, 0));
        painter_.drawLine(QPointF(0, -reach), QPointF(0, reach));
    } else {
        painter_.drawLine(QPointF(-reach, -reach), QPointF(reach, reach));
        painter_.drawLine(QPointF(-reach, reach), QPointF(reach, -reach));
    }
    painter_.restore();
}

} // namespace plovik
