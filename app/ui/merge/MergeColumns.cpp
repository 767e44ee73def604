// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/merge/MergeColumns.h"

#include "app/ui/merge/ConflictStrip.h"
#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/RowPainting.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QLocale>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>

namespace plovik {

namespace {

using gitkit::MergeSegment;
using gitkit::MergeSide;
using Choice = gitkit::MergeChoice;
using Kind = MergeSegment::Kind;

/// Code is not scrolled further to the side.
constexpr int mostColumns = 4000;
/// The longest text of a side that assistive technology is told.
constexpr std::size_t longestTold = 1000;

} // namespace

MergeColumns::MergeColumns(QWidget* parent) : QAbstractScrollArea(parent)
{
    setAccessibleName(tr("Merge Sides"));
    setFocusPolicy(Qt::StrongFocus);
    setFrameShape(NoFrame);
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setAutoFillBackground(true);
    giveFocusRing(*this);
    geometry_.measure();
}

void MergeColumns::setResult(const MergeResult* result, const MergeNames& names)
{
    result_ = result;
    names_ = names;
    look_.current.reset();
    syntax_ = {};
    widestColumns_ = 0;
    for (const MergeSide side : {MergeSide::base, MergeSide::left, MergeSide::right}) {
        if (!result_)
            break;
        const gitkit::MergeText& text = result_->sides().text(side);
        for (std::size_t line = 0; line < text.lineCount(); ++line)
            widestColumns_ = std::max(widestColumns_, static_cast<int>(text.line(line).size()));
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
    const MergePlace kept = place();
    isBaseShown_ = shown;
    layOut();
    setPlace(kept);
}

void MergeColumns::setSyntax(MergeSide side, std::shared_ptr<const FileSyntax> syntax)
{
    syntax_[static_cast<std::size_t>(side)] = std::move(syntax);
    viewport()->update();
}

void MergeColumns::setTabWidth(int columns)
{
    look_.tabWidth = columns;
    viewport()->update();
}

void MergeColumns::layOut()
{
    geometry_.layOut(result_, isBaseShown_);
    updateBars();
    placeStrips();
    viewport()->update();
}

void MergeColumns::updateBars()
{
    geometry_.setViewport(viewport()->size());
    verticalScrollBar()->setPageStep(std::max(1, geometry_.roomHeight()));
    verticalScrollBar()->setSingleStep(geometry_.lineHeight());
    verticalScrollBar()->setRange(0, std::max(0, geometry_.total() - geometry_.roomHeight()));
    const int room = geometry_.columns().front().width - geometry_.numberWidth() - MergeGeometry::gap;
    horizontalScrollBar()->setPageStep(std::max(1, room));
    horizontalScrollBar()->setSingleStep(static_cast<int>(geometry_.cell() * 4));
    const int widest = static_cast<int>(std::min(widestColumns_, mostColumns) * geometry_.cell());
    horizontalScrollBar()->setRange(0, std::max(0, widest - room));
    geometry_.scrollTo(verticalScrollBar()->value());
}

ConflictStrip& MergeColumns::strip(std::size_t number)
{
    if (number == strips_.size()) {
        auto* made = new ConflictStrip(viewport());
        connect(made, &ConflictStrip::chosen, this, &MergeColumns::chosen);
        connect(made, &ConflictStrip::pressed, this, &MergeColumns::setCurrent);
        strips_.push_back(made);
    }
    return *strips_[number];
}

/// Puts strips above the conflicts in sight. There are never more of them than have room.
void MergeColumns::placeStrips()
{
    std::size_t used = 0;
    const int head = geometry_.headHeight();
    std::size_t index = geometry_.count() == 0 ? 0 : geometry_.segmentAt(geometry_.fromViewport(head));
    for (; index < geometry_.count(); ++index) {
        const int top = geometry_.toViewport(geometry_.top(index));
        const int height = geometry_.stripHeight(index);
        if (top > viewport()->height())
            break;
        if (height == 0 || top + height <= head)
            continue;
        const MergeSegment& segment = result_->sides().segments[index];
        ConflictStrip& placed = strip(used++);
        placed.setGeometry(0, top, viewport()->width(), height);
        placed.show({index, geometry_.conflictNumber(index), result_->conflictCount(), result_->pieces()[index],
                     segment.isWhitespaceOnly, segment.isLineEndsOnly, look_.current == index, names_});
    }
    for (std::size_t unused = used; unused < strips_.size(); ++unused)
        strips_[unused]->setVisible(false);
}

void MergeColumns::goTo(std::size_t segment)
{
    setCurrent(segment);
    const int height = geometry_.roomHeight();
    const int value = verticalScrollBar()->value();
    // A few lines above it tell where it is.
    if (geometry_.top(segment) < value || geometry_.bottom(segment) > value + height)
        verticalScrollBar()->setValue(geometry_.top(segment) - std::min(2 * geometry_.lineHeight(), height / 4));
}

void MergeColumns::setCurrent(std::optional<std::size_t> segment)
{
    if (look_.current == segment)
        return;
    look_.current = segment;
    placeStrips();
    describe();
    viewport()->update();
    Q_EMIT currentChanged();
}

MergePlace MergeColumns::place() const
{
    if (geometry_.count() == 0)
        return {};
    const int y = verticalScrollBar()->value();
    const std::size_t segment = geometry_.segmentAt(y);
    const int height = std::max(1, geometry_.bottom(segment) - geometry_.top(segment));
    return {segment, std::clamp(static_cast<double>(y - geometry_.top(segment)) / height, 0.0, 1.0)};
}

void MergeColumns::setPlace(const MergePlace& place)
{
    if (place.segment >= geometry_.count())
        return;
    const int height = geometry_.bottom(place.segment) - geometry_.top(place.segment);
    verticalScrollBar()->setValue(geometry_.top(place.segment) + static_cast<int>(place.share * height));
}

/// Tells assistive technology what the current segment is.
void MergeColumns::describe()
{
    QString text;
    if (result_ && look_.current) {
        const MergeSegment& segment = result_->sides().segments[*look_.current];
        const auto lines = [&](MergeSide side) {
            return result_->decoded(result_->sides().lines(segment, side).substr(0, longestTold)).trimmed();
        };
        if (const int number = geometry_.conflictNumber(*look_.current); number > 0) {
            const QLocale locale;
            text = tr("Conflict %1 of %2").arg(locale.toString(number), locale.toString(result_->conflictCount()));
            if (const QString decision = decisionText(result_->pieces()[*look_.current], names_); !decision.isEmpty())
                text += QStringLiteral(", ") + decision;
            text += u'\n';
        }
        text += names_.left + QStringLiteral(":\n") + lines(MergeSide::left) + u'\n' + names_.right +
                QStringLiteral(":\n") + lines(MergeSide::right);
    }
    setAccessibleDescription(text);
}

void MergeColumns::paintEvent(QPaintEvent* /*event*/)
{
    if (!result_)
        return;
    QPainter painter(viewport());
    look_.scrolledSideways = horizontalScrollBar()->value();
    const MergePainter merge(painter, geometry_, *result_, syntax_, look_);
    merge.paintSegments();
    merge.paintNames(names_);
}

std::optional<std::size_t> MergeColumns::segmentAt(QPoint point) const
{
    const int y = geometry_.fromViewport(point.y());
    if (geometry_.count() == 0 || point.y() < geometry_.headHeight() || y >= geometry_.total())
        return std::nullopt;
    return geometry_.segmentAt(y);
}

std::optional<std::size_t> MergeColumns::refusalAt(QPoint point) const
{
    const auto index = segmentAt(point);
    if (!index)
        return std::nullopt;
    const MergeSegment& segment = result_->sides().segments[*index];
    const bool isThere = isRefusable(segment) && geometry_.refusalRect(*index, refusalSide(segment)).contains(point);
    return isThere ? index : std::nullopt;
}

void MergeColumns::refuse(std::size_t segment)
{
    const bool isRefused = result_->pieces()[segment].choice == Choice::base;
    Q_EMIT chosen(segment, isRefused ? Choice::undecided : Choice::base);
}

void MergeColumns::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint point = event->position().toPoint();
    const auto segment = segmentAt(point);
    // What the keys decide stays the same while others are only looked at.
    if (segment && result_->sides().segments[*segment].kind != Kind::equal)
        setCurrent(segment);
    if (const auto refused = refusalAt(point))
        refuse(*refused);
}

bool MergeColumns::viewportEvent(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QAbstractScrollArea::viewportEvent(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    if (const auto segment = refusalAt(help->pos())) {
        const bool isRefused = result_->pieces()[*segment].choice == Choice::base;
        QToolTip::showText(help->globalPos(), plainToolTip(isRefused ? tr("Take this change after all (Alt+0)")
                                                                     : tr("Leave this change out (Alt+0)")));
    } else {
        QToolTip::hideText();
    }
    return true;
}

QMenu* MergeColumns::makeMenu(std::size_t index, MergeSide side)
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const QString& title, Choice choice) {
        menu->addAction(plainMenuText(title), this, [this, index, choice] { Q_EMIT chosen(index, choice); });
    };
    const MergeSegment& segment = result_->sides().segments[index];
    if (segment.kind == Kind::conflict) {
        add(tr("Take %1").arg(names_.left), Choice::left);
        add(tr("Take %1").arg(names_.right), Choice::right);
        add(tr("%1 First, Then %2").arg(names_.left, names_.right), Choice::leftThenRight);
        add(tr("%1 First, Then %2").arg(names_.right, names_.left), Choice::rightThenLeft);
        add(tr("Take Neither"), Choice::none);
        menu->addSeparator();
        add(tr("Leave Undecided"), Choice::undecided);
        menu->addSeparator();
    } else if (isRefusable(segment)) {
        const bool isRefused = result_->pieces()[index].choice == Choice::base;
        add(isRefused ? tr("Take This Change After All") : tr("Leave This Change Out"),
            isRefused ? Choice::undecided : Choice::base);
        menu->addSeparator();
    }
    const QString text = result_->decoded(result_->sides().lines(segment, side));
    auto* copy = menu->addAction(tr("Copy Lines"), this, [text] { QGuiApplication::clipboard()->setText(text); });
    copy->setEnabled(!text.isEmpty());
    return menu;
}

QMenu* MergeColumns::makeContextMenu()
{
    return result_ && look_.current ? makeMenu(*look_.current, MergeSide::left) : nullptr;
}

void MergeColumns::contextMenuEvent(QContextMenuEvent* event)
{
    if (event->reason() == QContextMenuEvent::Keyboard) {
        if (QMenu* const menu = makeContextMenu())
            menu->popup(viewport()->mapToGlobal(QPoint(0, geometry_.headHeight())));
        return;
    }
    const QPoint point = viewport()->mapFromGlobal(event->globalPos());
    const auto segment = segmentAt(point);
    if (!segment)
        return;
    MergeSide side = MergeSide::left;
    for (const MergeGeometry::Column& column : geometry_.columns()) {
        if (point.x() >= column.left)
            side = column.side;
    }
    makeMenu(*segment, side)->popup(event->globalPos());
}

void MergeColumns::keyPressEvent(QKeyEvent* event)
{
    QScrollBar* const bar = verticalScrollBar();
    if (event->key() == Qt::Key_Home)
        bar->setValue(0);
    else if (event->key() == Qt::Key_End)
        bar->setValue(bar->maximum());
    else
        QAbstractScrollArea::keyPressEvent(event);
}

void MergeColumns::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    updateBars();
    placeStrips();
}

void MergeColumns::scrollContentsBy(int /*dx*/, int /*dy*/)
{
    geometry_.scrollTo(verticalScrollBar()->value());
    placeStrips();
    viewport()->update();
    Q_EMIT scrolled();
}

void MergeColumns::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        geometry_.measure();
        layOut();
    }
}

} // namespace plovik

#include "moc_MergeColumns.cpp"
