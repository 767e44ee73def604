// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffAccessible.h"
#include "app/ui/diff/DiffRowPainter.h"
#include "app/ui/diff/DiffSectionView.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QTextBoundaryFinder>

namespace plovik {

namespace {

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

DiffPosition DiffSectionView::positionAt(QPoint point, DiffSide side) const
{
    const int line = lineAt(point.y());
    const int row = lines_.rowAt(line, side);
    if (row < 0 || !document_.row(row).isCode())
        return {line, 0};
    return {line, rowPainter().sourceAt(row, point.x() - leftOf(side))};
}

void DiffSectionView::pointAt(QPoint point)
{
    const bool isInside = document_.rowCount() > 0 && visibleRowsArea().contains(point);
    const int row = isInside ? rowNear(point) : -1;
    const bool isCode = isInside && document_.row(row).isCode() && !isInGutter(point.x());
    setCursor(isCode ? Qt::IBeamCursor : Qt::ArrowCursor);
    hoverMore(point);
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
    const int line = lineAt(point.y());
    const DiffSide side = sideAt(point.x());
    const int row = rowNear(point);
    const bool extends = event->modifiers().testFlag(Qt::ShiftModifier);
    current_ = row;
    keyboardSide_ = side == DiffSide::before ? side : DiffSide::after;
    dragPoint_ = point;
    if (const MoreButton more = moreButtonAt(point); more.row >= 0) {
        pressMore(more);
        return;
    }
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
            selection_.extendLines(line);
        else if (event->modifiers().testFlag(Qt::ControlModifier))
            selection_.toggleLine(line, side);
        else
            selection_.startLines(line, side);
    } else {
        drag_ = Drag::text;
        if (extends)
            selection_.extendText(positionAt(point, side));
        else
            selection_.startText(positionAt(point, side), side);
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
        selection_.extendLines(lineAt(point.y()));
    else
        selection_.extendText(positionAt(point, selection_.textSide()));
    current_ = lines_.nearestRow(lineAt(point.y()), keyboardSide_);
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
    const DiffSide side = sideAt(point.x());
    const DiffPosition at = positionAt(point, side);
    const int row = lines_.rowAt(at.line, side);
    if (row < 0 || !document_.row(row).isCode())
        return;
    const QString text = document_.text(row).left(ShownLine::mostShown);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    finder.setPosition(std::min(at.column + 1, text.size()));
    const qsizetype begin = std::max<qsizetype>(0, finder.toPreviousBoundary());
    const qsizetype end = std::max(begin, finder.toNextBoundary());
    selection_.startText({at.line, begin}, side);
    selection_.extendText({at.line, end});
    selectionChanged();
}

void DiffSectionView::leaveEvent(QEvent* event)
{
    QWidget::leaveEvent(event);
    hoverMore({-1, -1});
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

QString DiffSectionView::selectedText() const
{
    QStringList lines;
    for (const int row : selectedRows()) {
        if (!document_.row(row).isCode())
            continue;
        QString text = document_.text(row);
        if (selection_.hasText()) {
            const int line = lines_.lineOf(row);
            if (line == selection_.textEnd().line)
                text.truncate(selection_.textEnd().column);
            if (line == selection_.textBegin().line)
                text.remove(0, selection_.textBegin().column);
        } else if (!document_.row(row).isChange()) {
            continue;
        }
        lines << text;
    }
    // Whole lines are copied with the end of the last one.
    if (!lines.isEmpty() && !selection_.hasText())
        lines << QString();
    return lines.join(u'\n');
}

void DiffSectionView::copy()
{
    if (const QString text = selectedText(); !text.isEmpty())
        QApplication::clipboard()->setText(text);
}

void DiffSectionView::selectAll()
{
    if (document_.rowCount() == 0)
        return;
    // Side by side, the text is that of one file: where the keyboard is.
    const DiffSide side = lines_.areSideBySide() ? keyboardSide_ : DiffSide::both;
    const int last = lines_.count() - 1;
    const int row = lines_.rowAt(last, side);
    selection_.startText({0, 0}, side);
    selection_.extendText({last, std::max<qsizetype>(1, row < 0 ? 1 : document_.text(row).size())});
    selectionChanged();
}

} // namespace plovik
