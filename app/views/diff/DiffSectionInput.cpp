#include "app/views/diff/DiffAccessible.h"
#include "app/views/diff/DiffRowPainter.h"
#include "app/views/diff/DiffSectionView.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QTextBoundaryFinder>

namespace plovik {

namespace {

using Verb = DiffAction::Verb;

constexpr int scrollEvery = 40; ///< milliseconds

} // namespace

void DiffSectionView::selectionChanged()
{
    updateOffers();
    announceDiffCursor(this);
}

void DiffSectionView::setCurrentRow(int row)
{
    if (row < 0 || row >= document_.rowCount())
        return;
    current_ = row;
    placeHunkButtons();
    update();
}

DiffPosition DiffSectionView::positionAt(QPoint point) const
{
    const int row = rowAt(point.y());
    if (!document_.row(row).isCode())
        return {row, 0};
    return {row, DiffRowPainter(document_, metrics_, {width(), offset_}).sourceAt(row, point.x())};
}

void DiffSectionView::pointAt(QPoint point)
{
    const bool isInside = document_.rowCount() > 0 && visibleRowsArea().contains(point);
    const int row = isInside ? rowAt(point.y()) : -1;
    const bool isCode = isInside && document_.row(row).isCode() && !isInGutter(point.x());
    setCursor(isCode ? Qt::IBeamCursor : Qt::ArrowCursor);
    const int hunk = isInside ? document_.row(row).hunk : hovered_;
    if (hunk == hovered_)
        return;
    // The buttons go with the pointer; the focus does not go with the buttons.
    for (const auto& [verb, button] : hunkButtons_) {
        if (button->hasFocus())
            setFocus(Qt::MouseFocusReason);
    }
    hovered_ = hunk;
    placeHunkButtons();
    update();
}

void DiffSectionView::mousePressEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    if (event->button() != Qt::LeftButton || document_.rowCount() == 0 || !visibleRowsArea().contains(point)) {
        QWidget::mousePressEvent(event);
        return;
    }
    const int row = rowAt(point.y());
    const bool extends = event->modifiers().testFlag(Qt::ShiftModifier);
    current_ = row;
    dragPoint_ = point;
    if (document_.row(row).kind == DiffDocument::Kind::hunk) {
        // A press that no movement announced: the buttons are drawn here but stand elsewhere.
        pointAt(point);
        if (auto* const button = qobject_cast<QPushButton*>(childAt(point))) {
            button->click();
            return;
        }
        selection_.clear();
    } else if (isInGutter(point.x())) {
        drag_ = Drag::lines;
        if (extends)
            selection_.extendLines(row);
        else if (event->modifiers().testFlag(Qt::ControlModifier))
            selection_.toggleLine(row);
        else
            selection_.startLines(row);
    } else {
        drag_ = Drag::text;
        if (extends)
            selection_.extendText(positionAt(point));
        else
            selection_.startText(positionAt(point));
    }
    if (drag_ != Drag::none)
        dragTimer_.start(scrollEvery, this);
    selectionChanged();
}

void DiffSectionView::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    if (drag_ == Drag::none)
        pointAt(point);
    else
        dragTo(point);
}

void DiffSectionView::dragTo(QPoint point)
{
    dragPoint_ = point;
    const DiffSelection before = selection_;
    if (drag_ == Drag::lines)
        selection_.extendLines(rowAt(point.y()));
    else
        selection_.extendText(positionAt(point));
    current_ = rowAt(point.y());
    if (selection_ != before)
        selectionChanged();
}

void DiffSectionView::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != dragTimer_.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    const QRect seen = visibleRegion().boundingRect();
    if (seen.contains(dragPoint_))
        return;
    // What comes into sight is under the resting pointer then.
    const QPoint before = mapToParent(QPoint());
    Q_EMIT revealRequested(QRect(dragPoint_, QSize(1, 1)));
    dragTo(dragPoint_ + before - mapToParent(QPoint()));
}

void DiffSectionView::mouseReleaseEvent(QMouseEvent* event)
{
    QWidget::mouseReleaseEvent(event);
    drag_ = Drag::none;
    dragTimer_.stop();
}

void DiffSectionView::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    if (isInGutter(point.x()) || document_.rowCount() == 0 || !visibleRowsArea().contains(point)) {
        mousePressEvent(event);
        return;
    }
    const DiffPosition at = positionAt(point);
    const QString text = document_.text(at.row).left(ShownLine::mostShown);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    finder.setPosition(std::min(at.column + 1, text.size()));
    const qsizetype begin = std::max<qsizetype>(0, finder.toPreviousBoundary());
    const qsizetype end = std::max(begin, finder.toNextBoundary());
    selection_.startText({at.row, begin});
    selection_.extendText({at.row, end});
    selectionChanged();
}

void DiffSectionView::leaveEvent(QEvent* event)
{
    QWidget::leaveEvent(event);
    // The buttons stay where they are while the pointer is on its way to them or to the keyboard's hunk.
    if (drag_ == Drag::none && hovered_ >= 0 && current_ >= 0 && hasFocus()) {
        hovered_ = -1;
        placeHunkButtons();
        update();
    }
}

void DiffSectionView::contextMenuEvent(QContextMenuEvent* event)
{
    if (event->reason() == QContextMenuEvent::Mouse)
        pointAt(event->pos());
    QMenu menu(this);
    menu.setToolTipsVisible(true);
    addActions(menu);
    const QPoint at = event->reason() == QContextMenuEvent::Keyboard && current_ >= 0
                          ? mapToGlobal(rowRect(current_).bottomLeft() + QPoint(metrics_.codeLeft, 0))
                          : event->globalPos();
    menu.exec(at);
}

void DiffSectionView::moveCurrent(int row, bool extend)
{
    if (document_.rowCount() == 0)
        return;
    const int target = std::clamp(row, 0, document_.rowCount() - 1);
    if (extend) {
        if (selection_.isEmpty() || selection_.hasText())
            selection_.startLines(current_);
        selection_.extendLines(target);
    } else {
        selection_.clear();
    }
    current_ = target;
    hovered_ = -1;
    selectionChanged();
    Q_EMIT revealRequested(rowRect(current_));
}

void DiffSectionView::moveToHunk(int direction)
{
    const int hunk = current_ < 0 ? -1 : document_.row(current_).hunk;
    const int target = hunk + direction;
    if (hunk < 0 || target < 0 || target >= static_cast<int>(document_.hunks().size())) {
        Q_EMIT leaveRequested(direction);
        return;
    }
    const DiffDocument::Hunk& next = document_.hunks()[static_cast<std::size_t>(target)];
    moveCurrent(next.first, false);
    // As much of the hunk as there is room for, its header first.
    Q_EMIT revealRequested(rowRect(next.end - 1));
    Q_EMIT revealRequested(rowRect(next.first));
}

bool DiffSectionView::handleMovement(QKeyEvent* event)
{
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const bool extends = modifiers == Qt::ShiftModifier;
    if (modifiers == Qt::AltModifier && (event->key() == Qt::Key_Down || event->key() == Qt::Key_Up)) {
        moveToHunk(event->key() == Qt::Key_Down ? 1 : -1);
        return true;
    }
    if (modifiers != Qt::NoModifier && !extends)
        return false;
    const int page = std::max(1, visibleRegion().boundingRect().height() / metrics_.lineHeight - 3);
    switch (event->key()) {
    case Qt::Key_Up:
        moveCurrent(current_ - 1, extends);
        return true;
    case Qt::Key_Down:
        moveCurrent(current_ + 1, extends);
        return true;
    case Qt::Key_PageUp:
        moveCurrent(current_ - page, extends);
        return true;
    case Qt::Key_PageDown:
        moveCurrent(current_ + page, extends);
        return true;
    case Qt::Key_Home:
        moveCurrent(0, extends);
        return true;
    case Qt::Key_End:
        moveCurrent(document_.rowCount() - 1, extends);
        return true;
    default:
        return false;
    }
}

bool DiffSectionView::event(QEvent* event)
{
    // Single letters are the diff's while it has the focus, even where a menu has them too.
    if (event->type() == QEvent::ShortcutOverride) {
        auto* const key = static_cast<QKeyEvent*>(event);
        const bool isPlain = (key->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::NoModifier;
        if ((isPlain && key->key() != Qt::Key_Escape && key->key() < Qt::Key_F1) || key->matches(QKeySequence::Copy) ||
            key->matches(QKeySequence::SelectAll))
        {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

void DiffSectionView::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy)) {
        copy();
        return;
    }
    if (event->matches(QKeySequence::SelectAll)) {
        selectAll();
        return;
    }
    if (handleMovement(event))
        return;
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    switch (isPlain ? event->key() : 0) {
    case Qt::Key_N:
        moveToHunk(1);
        return;
    case Qt::Key_P:
        moveToHunk(-1);
        return;
    case Qt::Key_S:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        requestFromKey(Verb::stage);
        return;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        requestFromKey(Verb::discard);
        return;
    case Qt::Key_Space:
        if (current_ >= 0) {
            selection_.toggleLine(current_);
            selectionChanged();
        }
        return;
    case Qt::Key_Escape:
        if (!selection_.isEmpty()) {
            selection_.clear();
            selectionChanged();
            return;
        }
        break;
    default:
        break;
    }
    QWidget::keyPressEvent(event);
}

void DiffSectionView::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    update();
}

void DiffSectionView::focusOutEvent(QFocusEvent* event)
{
    QWidget::focusOutEvent(event);
    update();
}

void DiffSectionView::copy()
{
    QStringList lines;
    const DiffSelection::Rows rows = selection_.rows();
    for (int row = rows.first; row < std::min(rows.end, document_.rowCount()); ++row) {
        if (!document_.row(row).isCode())
            continue;
        QString text = document_.text(row);
        if (selection_.hasText()) {
            if (row == selection_.textEnd().row)
                text.truncate(selection_.textEnd().column);
            if (row == selection_.textBegin().row)
                text.remove(0, selection_.textBegin().column);
        } else if (!document_.row(row).isChange() || !selection_.holds(row)) {
            continue;
        }
        lines << text;
    }
    if (lines.isEmpty())
        return;
    // Whole lines are copied with the end of the last one.
    if (!selection_.hasText())
        lines << QString();
    QApplication::clipboard()->setText(lines.join(u'\n'));
}

void DiffSectionView::selectAll()
{
    if (document_.rowCount() == 0)
        return;
    const int last = document_.rowCount() - 1;
    selection_.startText({0, 0});
    selection_.extendText({last, std::max<qsizetype>(1, document_.text(last).size())});
    selectionChanged();
}

} // namespace plovik
