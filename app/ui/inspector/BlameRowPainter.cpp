// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/inspector/BlameRowPainter.h"

#include "app/settings/CodeFont.h"
#include "app/store/ShownText.h"
#include "app/ui/diff/syntax/SyntaxFormats.h"
#include "app/ui/history/RelativeDate.h"
#include "app/ui/inspector/BlameModel.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QDate>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace plovik {

namespace {

constexpr int keptLines = 400;
constexpr int blameMargin = 10;
constexpr int blameGap = 8;
constexpr int roomyView = 600; ///< from this width on hash, author and date stand side by side
constexpr int buttonSize = 18;

/// Lines up to this many units are shaped whole, which puts every character where its font wants it.
constexpr qsizetype longestShaped = 1000;

/// Signs for characters that cannot be drawn keep their own colour over that of the code around them.
void appendSignFormats(QList<QTextLayout::FormatRange>& formats, const ShownLine& line, qsizetype first,
                       qsizetype length)
{
    for (const ShownLine::Replacement& each : line.replacements) {
        const qsizetype begin = std::max(each.shown, first);
        const qsizetype end = std::min(each.shown + each.length, first + length);
        if (each.sign == ShownLine::Sign::tab || begin >= end)
            continue;
        const Theme& theme = Theme::current();
        QTextCharFormat format;
        format.setForeground(each.sign == ShownLine::Sign::control ? theme.statusConflicted : theme.gutterText);
        formats.append({static_cast<int>(begin - first), static_cast<int>(end - begin), format});
    }
}

void appendFoundFormats(QList<QTextLayout::FormatRange>& formats, const DiffFound& found, int row,
                        const ShownLine& line, qsizetype first, qsizetype length)
{
    for (const DiffFound::Run& run : found.inRow(row)) {
        const qsizetype begin = std::max(line.toShown(run.begin), first);
        const qsizetype end = std::min(line.toShown(run.end), first + length);
        if (begin >= end)
            continue;
        QTextCharFormat format;
        format.setBackground(found.isCurrent(run) ? Theme::current().foundCurrent : Theme::current().found);
        formats.append({static_cast<int>(begin - first), static_cast<int>(end - begin), format});
    }
}

} // namespace

QColor blameTint(double warmth)
{
    const Theme& theme = Theme::current();
    const auto share = static_cast<float>(std::clamp(warmth, 0.0, 1.0));
    const auto mix = [share](float recent, float old) { return recent * share + old * (1 - share); };
    return QColor::fromRgbF(mix(theme.blameNew.redF(), theme.blameOld.redF()),
                            mix(theme.blameNew.greenF(), theme.blameOld.greenF()),
                            mix(theme.blameNew.blueF(), theme.blameOld.blueF()));
}

BlameRowPainter::BlameRowPainter() : shown_(keptLines) { measure(0, 0); }

void BlameRowPainter::setDocument(std::shared_ptr<const BlameDocument> document)
{
    document_ = std::move(document);
    syntax_.reset();
    takeTabWidth();
}

void BlameRowPainter::takeTabWidth()
{
    tabWidth_ = document_ && document_->ownTabWidth() ? *document_->ownTabWidth() : CodeFont::tabWidth();
    columns_ = document_ ? document_->columns(tabWidth_) : 0;
    shown_.clear();
}

void BlameRowPainter::measure(int viewWidth, int annotationWidth)
{
    constexpr double heightPerPixel = 20.0 / 12;
    constexpr int fewestDigits = 3;
    locale_ = QLocale();
    codeFont_ = CodeFont::current();
    numberFont_ = codeFont_;
    numberFont_.setPointSizeF(std::max(7.0, codeFont_.pointSizeF() * 0.9));
    hashFont_ = Theme::fixedFont(-1.5);
    textFont_ = Theme::font(-1);
    const QFontMetricsF code(codeFont_);
    cell_ = code.horizontalAdvance(u'0');
    rowHeight_ =
        std::max({qRound(QFontInfo(codeFont_).pixelSize() * heightPerPixel), static_cast<int>(std::ceil(code.height())),
                  static_cast<int>(std::ceil(QFontMetricsF(textFont_).height()))});

    const QFontMetricsF text(textFont_);
    hashWidth_ = static_cast<int>(std::ceil(QFontMetricsF(hashFont_).horizontalAdvance(u'0') * 7));
    const QString someDate = locale_.toString(QDate(2028, 10, 28), QLocale::ShortFormat);
    const QString longestAgo = RelativeDate{RelativeDate::Unit::minutes, 59}.text(locale_);
    dateWidth_ =
        static_cast<int>(std::ceil(std::max(text.horizontalAdvance(someDate), text.horizontalAdvance(longestAgo))));
    isNarrow_ = viewWidth < roomyView;
    // A narrow view shows the date below the author.
    const int authorWidth =
        isNarrow_ ? std::max(static_cast<int>(text.height() * 4.5), dateWidth_) : static_cast<int>(text.height() * 7);
    annotationWidth_ = 2 * blameMargin + hashWidth_ + blameGap + authorWidth + (isNarrow_ ? 0 : blameGap + dateWidth_);
    if (annotationWidth > 0) {
        const int least = 2 * blameMargin + hashWidth_;
        annotationWidth_ = std::clamp(annotationWidth, least, std::max(least, viewWidth * 3 / 5));
        const int wanted = 2 * (blameMargin + blameGap) + hashWidth_ + dateWidth_ + static_cast<int>(text.height() * 3);
        isNarrow_ = annotationWidth_ < wanted;
    }

    const int rows = document_ ? document_->rowCount() : 0;
    const auto digits = std::max(fewestDigits, static_cast<int>(QString::number(rows).size()));
    numberWidth_ =
        static_cast<int>(std::ceil(QFontMetricsF(numberFont_).horizontalAdvance(u'0') * digits)) + 2 * blameGap;
}

int BlameRowPainter::contentWidth() const
{
    return codeLeft() + blameMargin + static_cast<int>(std::ceil(cell_ * columns_));
}

const ShownLine& BlameRowPainter::shown(int row)
{
    if (const ShownLine* const known = shown_.object(row))
        return *known;
    shown_.insert(row, new ShownLine(ShownLine::of(document_->text(row), tabWidth_)));
    return *shown_.object(row);
}

void BlameRowPainter::paint(QPainter& painter, int row, const QRect& area, const Look& look)
{
    const Theme& theme = Theme::current();
    painter.fillRect(area, look.isSelected ? theme.selection : theme.content);
    painter.save();
    painter.setClipRect(area.adjusted(codeLeft() - 2, 0, 0, 0), Qt::IntersectClip);
    paintCode(painter, row, area, look);
    painter.restore();
    paintNumber(painter, row, area, look);
    paintAnnotation(painter, row, area, look);
}

void BlameRowPainter::paintNumber(QPainter& painter, int row, const QRect& area, const Look& look) const
{
    const Theme& theme = Theme::current();
    const QRect column(area.left() + annotationWidth_, area.top(), numberWidth_, area.height());
    if (!look.isSelected)
        painter.fillRect(column, theme.gutter);
    painter.setFont(numberFont_);
    painter.setPen(look.isSelected ? theme.secondaryText : theme.gutterText);
    painter.drawText(column.adjusted(0, 0, -blameGap, 0), Qt::AlignRight | Qt::AlignVCenter, QString::number(row + 1));
    if (look.isCurrent)
        painter.fillRect(QRect(column.left(), area.top(), 2, area.height()), theme.accent);
}

void BlameRowPainter::paintAnnotation(QPainter& painter, int row, const QRect& area, const Look& look) const
{
    const Theme& theme = Theme::current();
    const BlameDocument::Run& run = document_->run(row);
    const BlameDocument::Commit& commit = document_->commit(row);
    const QRect column(area.left(), area.top(), annotationWidth_, area.height());
    painter.fillRect(column, blameTint(commit.warmth));
    if (row == run.first && row > 0)
        painter.fillRect(QRect(column.left(), column.top(), column.width() + numberWidth_, 1), theme.blameLine);

    const QRect inner = column.adjusted(blameMargin, 0, -blameMargin, 0);
    // A run that began above the view shows its commit in the first row in sight.
    const int told = row - std::clamp(look.topRow, run.first, run.end - 1);
    const QString date = RelativeDate::toNow(commit.date).text(locale_);
    if (told == 0 && commit.isUncommitted) {
        paintText(painter, inner, BlameModel::tr("Not committed yet"), textFont_, theme.text);
    } else if (told == 0) {
        paintText(painter, inner, shownText(gitkit::shortHash(commit.hash)), hashFont_, theme.blameText);
        const int dateRoom = isNarrow_ ? 0 : dateWidth_ + blameGap;
        paintText(painter, inner.adjusted(hashWidth_ + blameGap, 0, -dateRoom, 0), commit.author, textFont_,
                  theme.text);
        if (!isNarrow_)
            paintText(painter, inner, date, textFont_, theme.blameText, Qt::AlignRight);
    } else if (told == 1 && isNarrow_ && !commit.isUncommitted) {
        paintText(painter, inner.adjusted(hashWidth_ + blameGap, 0, 0, 0), date, textFont_, theme.blameText);
    }
    if (look.offersBefore)
        paintBeforeButton(painter, beforeButton(area), commit.warmth);
}

std::pair<int, int> BlameRowPainter::spanOf(const DiffFound::Run& match)
{
    const ShownLine& line = shown(match.row);
    const auto left = [&](qsizetype position) {
        return static_cast<int>(static_cast<double>(line.toShown(position)) * cell_);
    };
    return {left(match.begin), left(match.end)};
}

QRect BlameRowPainter::beforeButton(const QRect& area) const
{
    const int size = std::min(buttonSize, area.height() - 2);
    return {area.left() + annotationWidth_ - size - 4, area.top() + (area.height() - size) / 2, size, size};
}

void BlameRowPainter::paintBeforeButton(QPainter& painter, const QRect& button, double warmth) const
{
    const Theme& theme = Theme::current();
    // The button covers the end of the annotation.
    painter.fillRect(button.adjusted(-4, 0, 4, 0), blameTint(warmth));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(theme.quietBorder);
    painter.setBrush(theme.control);
    painter.drawRoundedRect(QRectF(button).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    // An arrow that turns round means a step back.
    painter.translate(QRectF(button).center());
    painter.setPen(QPen(theme.text, 1.3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawArc(QRectF(-3.6, -2.2, 7.2, 6.4), -90 * 16, 180 * 16);
    painter.drawLine(QPointF(0, -2.2), QPointF(-4, -2.2));
    painter.drawPolyline(QPolygonF{QPointF(-1.8, -4.6), QPointF(-4.2, -2.2), QPointF(-1.8, 0.2)});
    painter.restore();
}

void BlameRowPainter::paintCode(QPainter& painter, int row, const QRect& area, const Look& look)
{
    const ShownLine& line = shown(row);
    const int offset = look.offset;
    qsizetype first = 0;
    qsizetype length = line.shown.size();
    if (length > longestShaped) {
        first = std::clamp<qsizetype>(static_cast<qsizetype>(offset / cell_) - 4, 0, length);
        if (first > 0 && first < length && line.shown[first].isLowSurrogate())
            --first;
        length = std::min(static_cast<qsizetype>(area.width() / cell_) + 8, line.shown.size() - first);
    }
    QString text = line.shown.mid(first, length);
    if (line.notShown > 0 && first + length == line.shown.size())
        text += u' ' + BlameModel::tr("… %Ln more character(s)", nullptr, static_cast<int>(line.notShown));
    QTextLayout layout(text, codeFont_);
    QTextOption option;
    option.setTextDirection(Qt::LeftToRight);
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    QList<QTextLayout::FormatRange> formats;
    if (syntax_)
        appendSyntaxFormats(formats, syntax_->line(row + 1), line, first, length);
    appendSignFormats(formats, line, first, length);
    if (look.found)
        appendFoundFormats(formats, *look.found, row, line, first, length);
    layout.setFormats(formats);
    layout.beginLayout();
    QTextLine whole = layout.createLine();
    whole.setLeadingIncluded(false);
    layout.endLayout();
    painter.setPen(Theme::current().text);
    const double left = area.left() + codeLeft() + blameGap - offset + static_cast<double>(first) * cell_;
    layout.draw(&painter, QPointF(left, area.top() + std::floor((area.height() - whole.height()) / 2)));
}

} // namespace plovik
