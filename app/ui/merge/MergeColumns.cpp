// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/merge/MergeColumns.h"

#include "app/settings/CodeFont.h"
#include "app/ui/diff/ShownLine.h"
#include "app/ui/diff/WordMarks.h"
#include "app/ui/diff/syntax/FileSyntax.h"
#include "app/ui/diff/syntax/SyntaxFormats.h"
#include "app/ui/merge/MergeColors.h"
#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QLocale>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QTextLayout>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace plovik {

namespace {

using gitkit::LineSpan;
using gitkit::MergeSegment;
using gitkit::MergeSide;
using Choice = gitkit::MergeChoice;
using Kind = MergeSegment::Kind;

constexpr int codeGap = 10;
constexpr int refusalSize = 16;
/// Lines of more units are cut where they are drawn: nobody sees their end.
constexpr qsizetype longestDrawn = 2000;

std::size_t indexOf(MergeSide side) { return static_cast<std::size_t>(side); }

std::string_view withoutEnd(std::string_view line)
{
    if (line.ends_with('\n'))
        line.remove_suffix(1);
    return line;
}

} // namespace

MergeColumns::MergeColumns(QWidget* parent) : QAbstractScrollArea(parent)
{
    setAccessibleName(tr("Merge Sides"));
    setFocusPolicy(Qt::StrongFocus);
    setFrameShape(NoFrame);
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setAutoFillBackground(true);
    viewport()->setMouseTracking(true);
    giveFocusRing(*this);
    measure();
}

void MergeColumns::measure()
{
    const QFont font = CodeFont::current();
    const QFontMetricsF metrics(font);
    cell_ = metrics.horizontalAdvance(u'0');
    lineHeight_ = std::max(qRound(QFontInfo(font).pixelSize() * 1.6), static_cast<int>(metrics.height()));
}

void MergeColumns::setResult(const MergeResult* result, const MergeNames& names)
{
    result_ = result;
    names_ = names;
    current_.reset();
    syntax_ = {};
    numbers_.clear();
    widestColumns_ = 0;
    int number = 0;
    if (result_) {
        for (const MergeSegment& segment : result_->sides().segments)
            numbers_.push_back(segment.kind == Kind::conflict ? ++number : 0);
        for (const MergeSide side : {MergeSide::base, MergeSide::left, MergeSide::right}) {
            const gitkit::MergeText& text = result_->sides().text(side);
            for (std::size_t line = 0; line < text.lineCount(); ++line)
                widestColumns_ = std::max(widestColumns_, static_cast<int>(text.line(line).size()));
        }
    }
    layOut();
    verticalScrollBar()->setValue(0);
    horizontalScrollBar()->setValue(0);
    describe();
}

void MergeColumns::resultChanged()
{
    placeStrips();
    describe();
    viewport()->update();
}

void MergeColumns::setBaseShown(bool shown)
{
    if (isBaseShown_ == shown)
        return;
    const MergePlace kept = place();
    isBaseShown_ = shown;
    layOut();
    setPlace(kept);
}

void MergeColumns::setSyntax(MergeSide side, std::shared_ptr<const FileSyntax> syntax)
{
    syntax_[indexOf(side)] = std::move(syntax);
    viewport()->update();
}

void MergeColumns::setTabWidth(int columns)
{
    tabWidth_ = columns;
    viewport()->update();
}

std::size_t MergeColumns::rowsOf(std::size_t index) const
{
    const MergeSegment& segment = result_->sides().segments[index];
    std::size_t rows = std::max(segment.left.count, segment.right.count);
    if (isBaseShown_)
        rows = std::max(rows, segment.base.count);
    // What both sides have taken away would not be seen at all.
    return segment.kind == Kind::equal ? rows : std::max<std::size_t>(rows, 1);
}

int MergeColumns::stripOf(std::size_t segment) const
{
    return numbers_[segment] > 0 ? ConflictStrip::heightOfAll() : 0;
}

void MergeColumns::layOut()
{
    tops_.assign(1, 0);
    for (std::size_t index = 0; result_ && index < result_->pieces().size(); ++index)
        tops_.push_back(tops_.back() + stripOf(index) + static_cast<int>(rowsOf(index)) * lineHeight_);
    std::size_t lines = 100;
    if (result_)
        lines = std::max({lines, result_->sides().left.lineCount(), result_->sides().right.lineCount(),
                          result_->sides().base.lineCount()});
    numberWidth_ =
        static_cast<int>(std::ceil(cell_ * static_cast<double>(QString::number(lines).size()))) + 2 * codeGap;
    updateBars();
    placeStrips();
    viewport()->update();
}

int MergeColumns::headHeight() const { return std::max(26, QFontMetrics(Theme::font()).height() + 10); }

std::vector<MergeColumns::Column> MergeColumns::columns() const
{
    std::vector<MergeSide> sides{MergeSide::left, MergeSide::right};
    if (isBaseShown_)
        sides.insert(sides.begin(), MergeSide::base);
    const int count = static_cast<int>(sides.size());
    std::vector<Column> columns;
    for (int index = 0; index < count; ++index) {
        const int left = viewport()->width() * index / count;
        columns.push_back(
            {sides[static_cast<std::size_t>(index)], left, viewport()->width() * (index + 1) / count - left});
    }
    return columns;
}

void MergeColumns::updateBars()
{
    const int height = viewport()->height() - headHeight();
    verticalScrollBar()->setPageStep(std::max(1, height));
    verticalScrollBar()->setSingleStep(lineHeight_);
    verticalScrollBar()->setRange(0, std::max(0, tops_.back() - height));
    const int room = columns().front().width - numberWidth_ - codeGap;
    horizontalScrollBar()->setPageStep(std::max(1, room));
    horizontalScrollBar()->setSingleStep(static_cast<int>(cell_ * 4));
    const double widest = std::min<double>(widestColumns_, longestDrawn) * cell_;
    horizontalScrollBar()->setRange(0, std::max(0, static_cast<int>(widest) - room));
}

/// Puts strips above the conflicts in sight. There are never more of them than have room.
void MergeColumns::placeStrips()
{
    std::size_t used = 0;
    const int height = ConflictStrip::heightOfAll();
    const int scroll = verticalScrollBar()->value() - headHeight();
    if (result_ && !result_->pieces().empty()) {
        for (std::size_t index = segmentAt(verticalScrollBar()->value()); index < result_->pieces().size(); ++index) {
            const int top = tops_[index] - scroll;
            if (top > viewport()->height())
                break;
            if (numbers_[index] == 0 || top + height <= headHeight())
                continue;
            if (used == strips_.size()) {
                auto* made = new ConflictStrip(viewport());
                connect(made, &ConflictStrip::chosen, this, &MergeColumns::chosen);
                connect(made, &ConflictStrip::pressed, this, &MergeColumns::setCurrent);
                strips_.push_back(made);
            }
            const MergeSegment& segment = result_->sides().segments[index];
            ConflictStrip* const strip = strips_[used++];
            strip->setGeometry(0, top, viewport()->width(), height);
            strip->show({index, numbers_[index], result_->conflictCount(), result_->pieces()[index],
                         segment.isWhitespaceOnly, segment.isLineEndsOnly, current_ == index, names_});
        }
    }
    for (std::size_t index = used; index < strips_.size(); ++index)
        strips_[index]->setVisible(false);
}

/// Returns the segment at a height of what is scrolled.
std::size_t MergeColumns::segmentAt(int y) const
{
    const auto behind = std::upper_bound(tops_.begin(), tops_.end(), y);
    const auto index = std::distance(tops_.begin(), behind) - 1;
    return static_cast<std::size_t>(
        std::clamp<std::ptrdiff_t>(index, 0, static_cast<std::ptrdiff_t>(tops_.size()) - 2));
}

void MergeColumns::goTo(std::size_t segment)
{
    setCurrent(segment);
    const int height = viewport()->height() - headHeight();
    const int top = tops_[segment];
    const int value = verticalScrollBar()->value();
    if (top < value || tops_[segment + 1] > value + height) {
        // A few lines above it tell where it is.
        verticalScrollBar()->setValue(top - std::min(2 * lineHeight_, height / 4));
    }
}

void MergeColumns::setCurrent(std::optional<std::size_t> segment)
{
    if (current_ == segment)
        return;
    current_ = segment;
    placeStrips();
    describe();
    viewport()->update();
    Q_EMIT currentChanged();
}

MergePlace MergeColumns::place() const
{
    if (!result_ || result_->pieces().empty())
        return {};
    const int y = verticalScrollBar()->value();
    const std::size_t segment = segmentAt(y);
    const int height = std::max(1, tops_[segment + 1] - tops_[segment]);
    return {segment, std::clamp(static_cast<double>(y - tops_[segment]) / height, 0.0, 1.0)};
}

void MergeColumns::setPlace(const MergePlace& place)
{
    if (place.segment + 1 >= tops_.size())
        return;
    const int height = tops_[place.segment + 1] - tops_[place.segment];
    verticalScrollBar()->setValue(tops_[place.segment] + static_cast<int>(place.share * height));
}

/// Tells assistive technology what the current segment is.
void MergeColumns::describe()
{
    QString text;
    if (result_ && current_) {
        const MergeSegment& segment = result_->sides().segments[*current_];
        const auto lines = [&](MergeSide side) {
            return result_->decoded(result_->sides().lines(segment, side).substr(0, 1000)).trimmed();
        };
        if (numbers_[*current_] > 0) {
            const QLocale locale;
            text = tr("Conflict %1 of %2")
                       .arg(locale.toString(numbers_[*current_]), locale.toString(result_->conflictCount()));
            if (const QString decision = decisionText(result_->pieces()[*current_], names_); !decision.isEmpty())
                text += QStringLiteral(", ") + decision;
            text += u'\n';
        }
        text += names_.left + QStringLiteral(":\n") + lines(MergeSide::left) + u'\n' + names_.right +
                QStringLiteral(":\n") + lines(MergeSide::right);
    }
    setAccessibleDescription(text);
}

QColor MergeColumns::backgroundOf(std::size_t index, MergeSide side) const
{
    const Kind kind = result_->sides().segments[index].kind;
    const MergeResult::Piece& piece = result_->pieces()[index];
    const bool isChange = kind == Kind::conflict || kind == Kind::changedBoth ||
                          (kind == Kind::changedLeft && side == MergeSide::left) ||
                          (kind == Kind::changedRight && side == MergeSide::right);
    if (kind == Kind::equal || side == MergeSide::base || !isChange)
        return {};
    const bool isOut = piece.choice == Choice::none || piece.choice == Choice::base ||
                       (piece.choice == Choice::left && side == MergeSide::right) ||
                       (piece.choice == Choice::right && side == MergeSide::left);
    if (isOut)
        return Theme::current().gutter;
    return mergeColors::tint(side);
}

void MergeColumns::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(viewport());
    const std::vector<Column> all = columns();
    if (result_ && !result_->pieces().empty()) {
        const int scroll = verticalScrollBar()->value();
        const std::size_t first = segmentAt(scroll);
        for (std::size_t index = first; index < result_->pieces().size(); ++index) {
            if (tops_[index] - scroll + headHeight() > viewport()->height())
                break;
            for (const Column& column : all)
                paintSegment(painter, index, column);
            paintRefusal(painter, index);
        }
    }
    painter.setClipping(false);
    for (const Column& column : all) {
        if (column.left > 0)
            painter.fillRect(column.left, 0, 1, viewport()->height(), Theme::current().separator);
    }
    paintHead(painter, all);
}

void MergeColumns::paintHead(QPainter& painter, const std::vector<Column>& columns) const
{
    const Theme& theme = Theme::current();
    for (const Column& column : columns) {
        const QRect area(column.left, 0, column.width, headHeight());
        painter.fillRect(area, theme.bars);
        painter.fillRect(area.left(), area.bottom(), area.width(), 1, theme.separator);
        const QString& name = column.side == MergeSide::left    ? names_.left
                              : column.side == MergeSide::right ? names_.right
                                                                : names_.base;
        const QRect mark(area.left() + codeGap, area.center().y() - 4, 8, 8);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(mergeColors::strong(column.side));
        painter.drawEllipse(mark);
        painter.setRenderHint(QPainter::Antialiasing, false);
        paintText(painter, area.adjusted(codeGap + 14, 0, -codeGap, 0), name, Theme::font(-1, QFont::DemiBold),
                  theme.text);
    }
}

void MergeColumns::paintSegment(QPainter& painter, std::size_t index, const Column& column) const
{
    const LineSpan& lines = result_->sides().segments[index].on(column.side);
    const std::size_t rows = rowsOf(index);
    const int top = tops_[index] + stripOf(index) - verticalScrollBar()->value() + headHeight();
    const QRect area(column.left, top, column.width, static_cast<int>(rows) * lineHeight_);
    painter.setClipRect(area & viewport()->rect());
    const QColor background = backgroundOf(index, column.side);
    if (background.isValid())
        painter.fillRect(area.left(), area.top(), area.width(), static_cast<int>(lines.count) * lineHeight_,
                         background);
    if (lines.count < rows) { // the other side has more
        const int filled = static_cast<int>(lines.count) * lineHeight_;
        painter.fillRect(area.adjusted(0, filled, 0, 0), QBrush(Theme::current().separator, Qt::BDiagPattern));
    }
    if (background.isValid())
        painter.fillRect(area.left(), area.top(), 3, area.height(), mergeColors::strong(column.side));
    const auto first = static_cast<std::size_t>(std::max(0, (headHeight() - top) / lineHeight_));
    for (std::size_t row = first; row < lines.count; ++row) {
        const int y = top + static_cast<int>(row) * lineHeight_;
        if (y > viewport()->height())
            break;
        paintLine(painter, index, column, row, y);
    }
    if (current_ == index && numbers_[index] == 0) {
        painter.setPen(QPen(Theme::current().accent, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(area.adjusted(1, 1, -1, -1));
    }
}

void MergeColumns::paintLine(QPainter& painter, std::size_t index, const Column& column, std::size_t row, int y) const
{
    const Theme& theme = Theme::current();
    const MergeSegment& segment = result_->sides().segments[index];
    const gitkit::MergeText& text = result_->sides().text(column.side);
    const std::size_t number = segment.on(column.side).first + row;
    const std::string_view bytes = withoutEnd(text.line(number)).substr(0, longestDrawn);
    const ShownLine line = ShownLine::of(bytes, tabWidth_);

    QList<QTextLayout::FormatRange> formats;
    if (const auto& syntax = syntax_[indexOf(column.side)]) {
        appendSyntaxFormats(formats, syntax->line(static_cast<int>(number) + 1, withoutEnd(text.line(number))), line, 0,
                            line.shown.size());
    }
    QTextLayout layout(line.shown, CodeFont::current());
    layout.setFormats(formats);
    layout.beginLayout();
    QTextLine shaped = layout.createLine();
    shaped.setLineWidth(1e6);
    layout.endLayout();

    const int codeLeft = column.left + numberWidth_;
    const double x = codeLeft - horizontalScrollBar()->value();
    painter.save();
    painter.setClipRect(QRect(codeLeft, std::max(y, headHeight()), column.width - numberWidth_, lineHeight_));
    // What differs from the line in the same place on the other side.
    const MergeSide other = column.side == MergeSide::left ? MergeSide::right : MergeSide::left;
    if (segment.kind == Kind::conflict && column.side != MergeSide::base && row < segment.on(other).count) {
        const auto opposite =
            withoutEnd(result_->sides().text(other).line(segment.on(other).first + row)).substr(0, longestDrawn);
        for (const TextRange& range : wordMarks(textOf(opposite), line.source).added) {
            const double from = x + shaped.cursorToX(static_cast<int>(line.toShown(range.begin)));
            const double to = x + shaped.cursorToX(static_cast<int>(line.toShown(range.end)));
            painter.fillRect(QRectF(from, y + 1, to - from, lineHeight_ - 2),
                             Theme::mixed(theme.content, mergeColors::strong(column.side), 0.34F));
        }
    }
    const bool isOut = backgroundOf(index, column.side) == theme.gutter;
    painter.setPen(isOut ? theme.secondaryText : theme.text);
    layout.draw(&painter, QPointF(x, y + (lineHeight_ - shaped.height()) / 2));
    painter.restore();

    painter.setFont(CodeFont::current());
    painter.setPen(theme.gutterText);
    painter.drawText(QRect(column.left, y, numberWidth_ - codeGap, lineHeight_), Qt::AlignRight | Qt::AlignVCenter,
                     QString::number(number + 1));
}

bool MergeColumns::isRefusable(std::size_t index) const
{
    const Kind kind = result_->sides().segments[index].kind;
    return kind == Kind::changedLeft || kind == Kind::changedRight || kind == Kind::changedBoth;
}

/// Returns where the small button of a clean change stands: at the end of its first line.
QRect MergeColumns::refusalRect(std::size_t index) const
{
    const Kind kind = result_->sides().segments[index].kind;
    const MergeSide side = kind == Kind::changedRight ? MergeSide::right : MergeSide::left;
    for (const Column& column : columns()) {
        if (column.side == side) {
            const int top = tops_[index] - verticalScrollBar()->value() + headHeight();
            return {column.left + column.width - refusalSize - 6, top + (lineHeight_ - refusalSize) / 2, refusalSize,
                    refusalSize};
        }
    }
    return {};
}

void MergeColumns::paintRefusal(QPainter& painter, std::size_t index) const
{
    if (!isRefusable(index))
        return;
    const Theme& theme = Theme::current();
    const bool isRefused = result_->pieces()[index].choice == Choice::base;
    const QRectF area = refusalRect(index);
    painter.setClipRect(QRect(0, headHeight(), viewport()->width(), viewport()->height()));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme.controlBorder, 1));
    painter.setBrush(theme.control);
    painter.drawRoundedRect(area.adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    painter.setPen(QPen(theme.text, 1.4, Qt::SolidLine, Qt::RoundCap));
    const QPointF center = area.center();
    constexpr double reach = 3.2;
    if (isRefused) { // a plus: take it after all
        painter.drawLine(center - QPointF(reach, 0), center + QPointF(reach, 0));
        painter.drawLine(center - QPointF(0, reach), center + QPointF(0, reach));
    } else {
        painter.drawLine(center - QPointF(reach, reach), center + QPointF(reach, reach));
        painter.drawLine(center - QPointF(reach, -reach), center + QPointF(reach, -reach));
    }
    painter.restore();
}

std::optional<std::size_t> MergeColumns::refusedAt(QPoint point) const
{
    if (!result_ || result_->pieces().empty() || point.y() < headHeight())
        return std::nullopt;
    const std::size_t index = segmentAt(point.y() - headHeight() + verticalScrollBar()->value());
    return isRefusable(index) && refusalRect(index).contains(point) ? std::optional(index) : std::nullopt;
}

void MergeColumns::refuse(std::size_t segment)
{
    const bool isRefused = result_->pieces()[segment].choice == Choice::base;
    Q_EMIT chosen(segment, isRefused ? Choice::undecided : Choice::base);
}

void MergeColumns::mousePressEvent(QMouseEvent* event)
{
    if (!result_ || result_->pieces().empty() || event->button() != Qt::LeftButton)
        return;
    const QPoint point = event->position().toPoint();
    if (const auto refused = refusedAt(point)) {
        setCurrent(refused);
        refuse(*refused);
        return;
    }
    const int y = point.y() - headHeight() + verticalScrollBar()->value();
    if (point.y() < headHeight() || y >= tops_.back())
        return;
    const std::size_t index = segmentAt(y);
    if (result_->sides().segments[index].kind == Kind::equal)
        setCurrent(std::nullopt);
    else
        setCurrent(index);
}

bool MergeColumns::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        if (const auto segment = refusedAt(help->pos())) {
            const bool isRefused = result_->pieces()[*segment].choice == Choice::base;
            QToolTip::showText(help->globalPos(), isRefused ? tr("Take this change after all (Alt+0)")
                                                            : tr("Leave this change out (Alt+0)"));
        } else {
            QToolTip::hideText();
        }
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

QMenu* MergeColumns::makeMenu(std::size_t segment, MergeSide side)
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const QString& title, Choice choice) {
        menu->addAction(plainMenuText(title), this, [this, segment, choice] { Q_EMIT chosen(segment, choice); });
    };
    const Kind kind = result_->sides().segments[segment].kind;
    if (kind == Kind::conflict) {
        add(tr("Take %1").arg(names_.left), Choice::left);
        add(tr("Take %1").arg(names_.right), Choice::right);
        add(tr("%1 First, Then %2").arg(names_.left, names_.right), Choice::leftThenRight);
        add(tr("%1 First, Then %2").arg(names_.right, names_.left), Choice::rightThenLeft);
        add(tr("Take Neither"), Choice::none);
        menu->addSeparator();
        add(tr("Leave Undecided"), Choice::undecided);
        menu->addSeparator();
    } else if (isRefusable(segment)) {
        const bool isRefused = result_->pieces()[segment].choice == Choice::base;
        add(isRefused ? tr("Take This Change After All") : tr("Leave This Change Out"),
            isRefused ? Choice::undecided : Choice::base);
        menu->addSeparator();
    }
    const QString text = result_->decoded(result_->sides().lines(result_->sides().segments[segment], side));
    auto* copy = menu->addAction(tr("Copy Lines"), this, [text] { QGuiApplication::clipboard()->setText(text); });
    copy->setEnabled(!text.isEmpty());
    return menu;
}

void MergeColumns::contextMenuEvent(QContextMenuEvent* event)
{
    if (!result_ || result_->pieces().empty())
        return;
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPoint point = isByKey ? QPoint(0, headHeight()) : viewport()->mapFromGlobal(event->globalPos());
    std::size_t segment = segmentAt(point.y() - headHeight() + verticalScrollBar()->value());
    if (isByKey && current_)
        segment = *current_;
    MergeSide side = MergeSide::left;
    for (const Column& column : columns()) {
        if (point.x() >= column.left)
            side = column.side;
    }
    makeMenu(segment, side)->popup(isByKey ? viewport()->mapToGlobal(point) : event->globalPos());
}

void MergeColumns::keyPressEvent(QKeyEvent* event)
{
    QScrollBar* const bar = verticalScrollBar();
    switch (event->key()) {
    case Qt::Key_Home:
        bar->setValue(0);
        return;
    case Qt::Key_End:
        bar->setValue(bar->maximum());
        return;
    default:
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void MergeColumns::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    updateBars();
    placeStrips();
}

void MergeColumns::scrollContentsBy(int /*dx*/, int /*dy*/)
{
    placeStrips();
    viewport()->update();
    Q_EMIT scrolled();
}

void MergeColumns::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        measure();
        layOut();
    }
}

} // namespace plovik

#include "moc_MergeColumns.cpp"
