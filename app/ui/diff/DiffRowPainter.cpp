// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffRowPainter.h"

#include "app/ui/diff/DiffDocument.h"
#include "app/ui/diff/DiffFound.h"
#include "app/ui/diff/DiffMetrics.h"
#include "app/ui/diff/DiffSelection.h"
#include "app/ui/diff/syntax/SyntaxFormats.h"
#include "app/ui/widgets/ControlPainting.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QCoreApplication>
#include <QLocale>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace plovik {

namespace {

using namespace Qt::StringLiterals;
using LineKind = gitkit::DiffLine::Kind;

/// Lines of up to this many units are shaped whole, so that every character stands where the font wants it. Of longer
/// lines only what is in sight is shaped, and all columns are taken to be equally wide.
constexpr qsizetype longestShaped = 1000;

/// Width of the mark beside moved lines.
constexpr int movedMark = 4;

QColor mix(const QColor& over, const QColor& under, float share)
{
    const auto channel = [share](float a, float b) { return a * share + b * (1 - share); };
    return QColor::fromRgbF(channel(over.redF(), under.redF()), channel(over.greenF(), under.greenF()),
                            channel(over.blueF(), under.blueF()));
}

QColor lineColor(LineKind kind)
{
    const Theme& theme = Theme::current();
    if (kind == LineKind::addition)
        return theme.addedLine;
    return kind == LineKind::deletion ? theme.removedLine : theme.content;
}

QColor wordColor(LineKind kind)
{
    return kind == LineKind::addition ? Theme::current().addedWords : Theme::current().removedWords;
}

QColor gutterColor(LineKind kind)
{
    const bool isChange = kind == LineKind::addition || kind == LineKind::deletion;
    return isChange ? mix(wordColor(kind), lineColor(kind), 0.25F) : Theme::current().gutter;
}

QColor signColor(LineKind kind)
{
    return kind == LineKind::addition ? Theme::current().statusAdded : Theme::current().statusDeleted;
}

void paintTabArrow(QPainter& painter, double left, double right, double middle)
{
    const double tip = right - 2;
    painter.drawLine(QPointF(left + 1.5, middle), QPointF(tip, middle));
    painter.drawPolyline(QPolygonF{QPointF(tip - 3, middle - 3), QPointF(tip, middle), QPointF(tip - 3, middle + 3)});
}

} // namespace

/// The part of a row's code that is shaped: what is in sight of a long line, or one line of a wrapped row.
struct DiffRowPainter::Slice {
    const ShownLine* line = nullptr;
    qsizetype first = 0; ///< its first unit in the shown text
    qsizetype length = 0;
    double left = 0;    ///< where `first` stands before scrolling
    bool isLast = true; ///< whether the row ends with it
    std::unique_ptr<QTextLayout> layout;

    double x(qsizetype shown) const
    {
        const qsizetype inside = std::clamp<qsizetype>(shown - first, 0, length);
        return left + layout->lineAt(0).cursorToX(static_cast<int>(inside));
    }
    double xOfSource(qsizetype source) const { return x(line->toShown(source)); }
};

QList<QTextLayout::FormatRange> DiffRowPainter::formatsOf(int row, const Slice& part) const
{
    QList<QTextLayout::FormatRange> formats;
    appendSyntaxFormats(formats, document_.syntax(row), *part.line, part.first, part.length);
    for (const ShownLine::Replacement& each : part.line->replacements) {
        const qsizetype begin = std::max(each.shown, part.first);
        const qsizetype end = std::min(each.shown + each.length, part.first + part.length);
        if (each.sign == ShownLine::Sign::tab || begin >= end)
            continue;
        const Theme& theme = Theme::current();
        QTextCharFormat format;
        format.setForeground(each.sign == ShownLine::Sign::control ? theme.statusConflicted : theme.gutterText);
        formats.append({static_cast<int>(begin - part.first), static_cast<int>(end - begin), format});
    }
    return formats;
}

/// Returns where the continuation lines of a row begin; none if it is not wrapped.
const std::vector<qsizetype>& DiffRowPainter::points(int row) const
{
    static const std::vector<qsizetype> none;
    return metrics_.wrapColumns > 0 ? document_.wrapPoints(row, metrics_.wrapColumns) : none;
}

int DiffRowPainter::stripOfShown(int row, qsizetype shown) const
{
    const std::vector<qsizetype>& all = points(row);
    return static_cast<int>(std::ranges::upper_bound(all, shown) - all.begin());
}

int DiffRowPainter::stripOf(int row, qsizetype source) const
{
    return points(row).empty() ? 0 : stripOfShown(row, document_.shown(row).toShown(source));
}

DiffRowPainter::Slice DiffRowPainter::slice(int row, int strip) const
{
    Slice slice;
    const std::vector<qsizetype>& points = this->points(row);
    slice.line = &document_.shown(row);
    const QString& shown = slice.line->shown;
    slice.length = shown.size();
    if (metrics_.wrapColumns > 0) {
        const auto index = static_cast<std::size_t>(strip);
        slice.first = strip > 0 ? points[index - 1] : 0;
        slice.isLast = index == points.size();
        slice.length = (slice.isLast ? shown.size() : points[index]) - slice.first;
    } else if (shown.size() > longestShaped) {
        const auto columns = static_cast<qsizetype>(sight_.width / metrics_.cell) + 8;
        slice.first = std::clamp<qsizetype>(static_cast<qsizetype>(sight_.offset / metrics_.cell) - 4, 0, shown.size());
        if (slice.first > 0 && slice.first < shown.size() && shown[slice.first].isLowSurrogate())
            --slice.first;
        slice.length = std::min(columns, shown.size() - slice.first);
        slice.left = static_cast<double>(slice.first) * metrics_.cell;
    }
    QString text = shown.mid(slice.first, slice.length);
    if (slice.line->notShown > 0 && slice.first + slice.length == shown.size())
        text += QCoreApplication::translate("Diff", " … %1 more characters")
                    .arg(QLocale(QLocale::English).toString(slice.line->notShown));

    slice.layout = std::make_unique<QTextLayout>(text, metrics_.codeFont);
    QTextOption option;
    option.setTextDirection(Qt::LeftToRight);
    option.setWrapMode(QTextOption::NoWrap);
    slice.layout->setTextOption(option);
    slice.layout->setFormats(formatsOf(row, slice));
    slice.layout->beginLayout();
    slice.layout->createLine().setLeadingIncluded(false);
    slice.layout->endLayout();
    return slice;
}

void DiffRowPainter::paint(QPainter& painter, const DiffCell& cell, const DiffSelection& selection, int room) const
{
    if (cell.row < 0) {
        paintNothing(painter, cell.area);
        return;
    }
    const DiffDocument::Row& line = document_.row(cell.row);
    if (line.kind == LineKind::hunk) {
        paintHunk(painter, cell, room);
        return;
    }
    painter.fillRect(cell.area, lineColor(line.kind));
    painter.save();
    painter.setClipRect(cell.area.adjusted(metrics_.codeLeft - 2, 0, 0, 0), Qt::IntersectClip);
    if (line.kind == LineKind::meta)
        paintNote(painter, cell);
    else
        paintCode(painter, cell, selection);
    painter.restore();
    paintGutter(painter, cell);
    if (line.isChange() && selection.holds(cell.line, line.side)) {
        painter.setPen(Theme::current().accent);
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(cell.area.adjusted(0, 0, -1, -1));
    }
}

void DiffRowPainter::paintHunk(QPainter& painter, const DiffCell& cell, int room) const
{
    const Theme& theme = Theme::current();
    painter.fillRect(cell.area, theme.hunkHeader);
    const ShownLine& line = document_.shown(cell.row);
    paintText(painter, cell.area.adjusted(metrics_.hunkTextLeft, 0, -room - DiffMetrics::margin, 0),
              line.shown.left(1000), metrics_.numberFont, theme.hunkHeaderText);
}

/// Draws the place where a side has no line beside the other side's.
void DiffRowPainter::paintNothing(QPainter& painter, const QRect& area) const
{
    const Theme& theme = Theme::current();
    painter.fillRect(area, theme.gutter);
    // A fixed origin lets the pattern continue from line to line.
    painter.setBrushOrigin(0, 0);
    painter.fillRect(area, QBrush(mix(theme.separator, theme.gutter, 0.7F), Qt::BDiagPattern));
}

void DiffRowPainter::paintNote(QPainter& painter, const DiffCell& cell) const
{
    QFont quiet = metrics_.numberFont;
    quiet.setItalic(true);
    QString note = document_.text(cell.row);
    if (note.startsWith(u"\\ "_s))
        note.remove(0, 2);
    paintText(painter, cell.area.adjusted(metrics_.codeLeft, 0, 0, 0), note, quiet, Theme::current().secondaryText);
}

void DiffRowPainter::paintGutter(QPainter& painter, const DiffCell& cell) const
{
    const Theme& theme = Theme::current();
    const DiffDocument::Row& line = document_.row(cell.row);
    const QRect& area = cell.area;
    QRect gutter = area;
    gutter.setWidth(metrics_.gutterWidth);
    painter.fillRect(gutter, gutterColor(line.kind));
    if (document_.movedRow(cell.row) >= 0)
        painter.fillRect(gutter.right() - movedMark + 1, gutter.top(), movedMark, gutter.height(), theme.moved);
    if (sight_.ticked && line.isChange()) {
        const int side = checkBoxSize();
        const QRect box(area.left() + (metrics_.tickWidth - side) / 2,
                        area.top() + (std::min(area.height(), metrics_.lineHeight) - side) / 2, side, side);
        paintCheckBox(painter, box, sight_.ticked->contains(line.id) ? Qt::Checked : Qt::Unchecked, true, false);
    }
    painter.setFont(metrics_.numberFont);
    painter.setPen(theme.gutterText);
    // The numbers stand beside the first line of a wrapped row.
    const int height = std::min(area.height(), metrics_.lineHeight);
    const auto number = [&](const std::optional<int>& value, int right) {
        if (value)
            painter.drawText(QRect(area.left(), area.top(), right, height), Qt::AlignRight | Qt::AlignVCenter,
                             QString::number(*value));
    };
    const int lastRight = metrics_.gutterWidth - DiffMetrics::margin;
    if (cell.side == DiffSide::both && !document_.isCombined())
        number(line.oldNumber, metrics_.tickWidth + DiffMetrics::margin + metrics_.numberWidth);
    number(cell.side == DiffSide::before ? line.oldNumber : line.newNumber, lastRight);
    if (line.sign.isEmpty())
        return;
    painter.setFont(metrics_.codeFont);
    painter.setPen(signColor(line.kind));
    painter.drawText(QRect(area.left() + metrics_.gutterWidth + 6, area.top(), metrics_.codeLeft, height),
                     Qt::AlignLeft | Qt::AlignVCenter, line.sign);
}

void DiffRowPainter::paintCode(QPainter& painter, const DiffCell& cell, const DiffSelection& selection) const
{
    int strip = 0;
    int last = static_cast<int>(points(cell.row).size());
    if (last > 0 && !sight_.exposed.isNull()) {
        const auto stripAt = [&](int y) { return (y - cell.area.top()) / metrics_.lineHeight; };
        strip = std::clamp(stripAt(sight_.exposed.top()), 0, last);
        last = std::clamp(stripAt(sight_.exposed.bottom()), 0, last);
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(cell.area.left() + metrics_.codeLeft - sight_.offset,
                      cell.area.top() + strip * metrics_.lineHeight);
    for (; strip <= last; ++strip) {
        paintStrip(painter, cell, slice(cell.row, strip), selection);
        painter.translate(0, metrics_.lineHeight);
    }
    painter.restore();
}

void DiffRowPainter::paintStrip(QPainter& painter, const DiffCell& cell, const Slice& part,
                                const DiffSelection& selection) const
{
    const int row = cell.row;
    const QRect own(0, 0, cell.area.width(), metrics_.lineHeight);
    if (document_.row(row).isChange())
        paintMarks(painter, row, part, own);
    if (sight_.found)
        paintFound(painter, row, part, own);
    if (selection.hasTextOn(cell.side))
        paintSelectedText(painter, cell, part, selection, own.height());
    painter.setPen(Theme::current().text);
    const double height = part.layout->lineAt(0).height();
    part.layout->draw(&painter, QPointF(part.left, std::floor((own.height() - height) / 2)));
    if (document_.row(row).isChange())
        paintBlanks(painter, row, part, own);
}

void DiffRowPainter::paintMarks(QPainter& painter, int row, const Slice& part, const QRect& area) const
{
    const LineKind kind = document_.row(row).kind;
    painter.setPen(Qt::NoPen);
    painter.setBrush(wordColor(kind));
    for (const TextRange& range : document_.marks(row)) {
        const double left = part.xOfSource(range.begin);
        const double right = part.xOfSource(range.end);
        if (right > left)
            painter.drawRoundedRect(QRectF(left, 2, right - left, area.height() - 4), 3, 3);
    }
    // Added blanks at the end of a line are seldom intended.
    const qsizetype blanks = part.line->trailingBlanks;
    qsizetype end = part.line->source.size();
    if (part.line->source.endsWith(u'\r'))
        --end;
    if (kind == LineKind::addition && blanks < end) {
        painter.setBrush(Theme::current().removedWords);
        const double left = part.xOfSource(blanks);
        painter.drawRect(QRectF(left, 2, part.xOfSource(end) - left, area.height() - 4));
    }
}

void DiffRowPainter::paintBlanks(QPainter& painter, int row, const Slice& part, const QRect& area) const
{
    const std::vector<TextRange>& marks = document_.marks(row);
    const ShownLine& line = *part.line;
    const bool isAdded = document_.row(row).kind == LineKind::addition;
    const auto isMarked = [&](qsizetype position) {
        return (isAdded && position >= line.trailingBlanks) ||
               std::ranges::any_of(marks, [position](const TextRange& range) {
                   return position >= range.begin && position < range.end;
               });
    };
    QColor color = Theme::current().text;
    color.setAlphaF(0.6F);
    painter.setPen(QPen(color, 1));
    painter.setBrush(Qt::NoBrush);
    const double middle = area.height() / 2.0;
    for (const ShownLine::Replacement& each : line.replacements) {
        const bool inSight = each.shown + each.length > part.first && each.shown < part.first + part.length;
        if (each.sign == ShownLine::Sign::tab && inSight && isMarked(each.source))
            paintTabArrow(painter, part.x(each.shown), part.x(each.shown + each.length), middle);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    const qsizetype last = std::min(line.source.size(), line.toSource(part.first + part.length));
    const auto code = std::ranges::find_if(line.source, [](QChar unit) { return !unit.isSpace(); });
    const qsizetype indent = code - line.source.cbegin();
    for (qsizetype position = line.toSource(part.first); position < last; ++position) {
        // Between words the mark shows a blank well enough, but at the ends of a line it needs a dot.
        if (line.source[position] == u' ' && isMarked(position) &&
            (position >= line.trailingBlanks || position < indent))
            painter.drawEllipse(QPointF((part.xOfSource(position) + part.xOfSource(position + 1)) / 2, middle), 1.2,
                                1.2);
    }
}

void DiffRowPainter::paintFound(QPainter& painter, int row, const Slice& part, const QRect& area) const
{
    const Theme& theme = Theme::current();
    for (const DiffFound::Run& run : sight_.found->inRow(row)) {
        const double left = part.xOfSource(run.begin);
        const double right = part.xOfSource(run.end);
        if (right <= left)
            continue; // out of sight in a long line
        const bool isCurrent = sight_.found->isCurrent(run);
        painter.setPen(isCurrent ? QPen(theme.foundBorder, 1.4) : QPen(Qt::NoPen));
        painter.setBrush(isCurrent ? theme.foundCurrent : theme.found);
        painter.drawRoundedRect(QRectF(left - 0.5, 1.5, right - left + 1, area.height() - 3), 3, 3);
    }
}

void DiffRowPainter::paintSelectedText(QPainter& painter, const DiffCell& cell, const Slice& part,
                                       const DiffSelection& selection, int height) const
{
    const DiffPosition begin = selection.textBegin();
    const DiffPosition end = selection.textEnd();
    if (cell.line < begin.line || cell.line > end.line)
        return;
    const double left = cell.line == begin.line ? part.xOfSource(begin.column) : 0;
    double right = part.xOfSource(cell.line == end.line ? end.column : part.line->source.size());
    if (cell.line < end.line && part.isLast)
        right += metrics_.cell / 2; // the end of the line is selected as well
    QColor color = Theme::current().accent;
    color.setAlphaF(Theme::current().isDark ? 0.4F : 0.25F);
    painter.fillRect(QRectF(left, 0, right - left, height), color);
}

int DiffRowPainter::xOf(int row, qsizetype source) const
{
    const ShownLine& line = document_.shown(row);
    const bool isShaped = line.shown.size() <= longestShaped || metrics_.wrapColumns > 0;
    const double inside = isShaped ? slice(row, stripOf(row, source)).xOfSource(source)
                                   : static_cast<double>(line.toShown(source)) * metrics_.cell;
    return metrics_.codeLeft - sight_.offset + static_cast<int>(inside);
}

qsizetype DiffRowPainter::sourceAt(int row, QPoint point) const
{
    const auto last = static_cast<int>(points(row).size());
    const Slice part = slice(row, std::clamp(point.y() / metrics_.lineHeight, 0, last));
    const double inside = point.x() - metrics_.codeLeft + sight_.offset - part.left;
    const qsizetype shown = part.first + part.layout->lineAt(0).xToCursor(inside);
    return part.line->toSource(std::min(shown, part.first + part.length));
}

} // namespace plovik
