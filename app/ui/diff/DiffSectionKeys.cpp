// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffSectionView.h"

#include <QKeyEvent>

#include <algorithm>

namespace plovik {

namespace {

using Verb = DiffAction::Verb;

/// Whether a row begins a run of changed lines.
bool beginsChange(const DiffDocument& document, int row)
{
    if (!document.row(row).isChange())
        return false;
    // A note on a missing final newline does not part a run.
    int before = row - 1;
    while (before >= 0 && document.row(before).kind == DiffDocument::Kind::meta)
        --before;
    return before < 0 || !document.row(before).isChange();
}

int endOfChange(const DiffDocument& document, int row)
{
    while (row + 1 < document.rowCount() && document.row(row + 1).isChange())
        ++row;
    return row;
}

} // namespace

void DiffSectionView::moveCurrent(int row, bool extend)
{
    if (document_.rowCount() == 0)
        return;
    const int target = std::clamp(row, 0, document_.rowCount() - 1);
    if (extend) {
        if (selection_.isEmpty() || selection_.hasText())
            selection_.startLines(lines_.lineOf(current_));
        selection_.extendLines(lines_.lineOf(target));
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

bool DiffSectionView::moveToChange(int direction, bool enters)
{
    int row = enters ? (direction > 0 ? -1 : document_.rowCount()) : current_;
    // From what is looked at, where the current line was scrolled out of sight.
    if (!enters && current_ >= 0 && !isInSight(current_))
        row = std::max(0, anchorRow()) - (direction > 0 ? 1 : 0);
    do
        row += direction;
    while (row >= 0 && row < document_.rowCount() && !beginsChange(document_, row));
    if (row < 0 || row >= document_.rowCount())
        return false;
    moveCurrent(row, false);
    wasWalked_ = true;
    // With something around it; of a long change its start.
    const int around = 3 * metrics_.lineHeight;
    Q_EMIT revealRequested(rowRect(endOfChange(document_, row)).adjusted(0, 0, 0, around));
    Q_EMIT revealRequested(rowRect(row).adjusted(0, -around, 0, 0));
    return true;
}

void DiffSectionView::stopWalk()
{
    wasWalked_ = false;
    update();
}

DiffSide DiffSectionView::currentSide() const
{
    const DiffSide side = current_ < 0 ? DiffSide::both : document_.row(current_).side;
    return side == DiffSide::both ? keyboardSide_ : side;
}

void DiffSectionView::moveBy(int lines, bool extend)
{
    if (lines_.count() == 0)
        return;
    const int line = std::clamp(lines_.lineOf(std::max(0, current_)) + lines, 0, lines_.count() - 1);
    moveCurrent(lines_.nearestRow(line, keyboardSide_), extend);
}

bool DiffSectionView::moveToSide(DiffSide side)
{
    if (!lines_.areSideBySide() || current_ < 0 || currentSide() == side)
        return false;
    const int row = lines_.rowAt(lines_.lineOf(current_), side);
    if (row < 0)
        return false;
    keyboardSide_ = side;
    moveCurrent(row, false);
    return true;
}

void DiffSectionView::moveOn(int direction)
{
    // What is staged goes by hunks; what is read, by changes.
    if (content_.use == DiffContent::Use::read)
        Q_EMIT changeRequested(direction);
    else
        moveToHunk(direction);
}

bool DiffSectionView::handleModified(QKeyEvent* event)
{
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const int direction = event->key() == Qt::Key_Down ? 1 : -1;
    const bool isVertical = event->key() == Qt::Key_Down || event->key() == Qt::Key_Up;
    if (modifiers == Qt::AltModifier && isVertical) {
        moveToHunk(direction);
        return true;
    }
    if (modifiers == Qt::ControlModifier && isVertical) {
        showMore(keyboardHunk(), direction > 0 ? More::below : More::above, current_);
        return true;
    }
    if (event->key() == Qt::Key_F7 && (modifiers == Qt::NoModifier || modifiers == Qt::ShiftModifier)) {
        Q_EMIT changeRequested(modifiers == Qt::NoModifier ? 1 : -1);
        return true;
    }
    return false;
}

bool DiffSectionView::handleMovement(QKeyEvent* event)
{
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const bool extends = modifiers == Qt::ShiftModifier;
    if (handleModified(event))
        return true;
    if (modifiers != Qt::NoModifier && !extends)
        return false;
    const int page = std::max(1, visibleRegion().boundingRect().height() / metrics_.lineHeight - 3);
    switch (event->key()) {
    case Qt::Key_Up:
        moveBy(-1, extends);
        return true;
    case Qt::Key_Down:
        moveBy(1, extends);
        return true;
    case Qt::Key_PageUp:
        moveBy(-page, extends);
        return true;
    case Qt::Key_PageDown:
        moveBy(page, extends);
        return true;
    case Qt::Key_Home:
        moveBy(-lines_.count(), extends);
        return true;
    case Qt::Key_End:
        moveBy(lines_.count(), extends);
        return true;
    case Qt::Key_Left:
        return moveToSide(DiffSide::before);
    case Qt::Key_Right:
        return moveToSide(DiffSide::after);
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
        moveOn(1);
        return;
    case Qt::Key_P:
        moveOn(-1);
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
            selection_.toggleLine(lines_.lineOf(current_), lines_.areSideBySide() ? currentSide() : DiffSide::both);
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

} // namespace plovik
