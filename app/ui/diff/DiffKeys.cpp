// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffKeys.h"

#include "app/ui/diff/DiffController.h"

#include <QKeyEvent>

namespace plovik {

namespace {

using ActionVerb = DiffAction::Verb;

Qt::KeyboardModifiers modifiersOf(const QKeyEvent& event) { return event.modifiers() & ~Qt::KeypadModifier; }

bool handleWithModifier(DiffController& controller, const QKeyEvent& event)
{
    const Qt::KeyboardModifiers modifiers = modifiersOf(event);
    const int direction = event.key() == Qt::Key_Down ? 1 : -1;
    const bool isVertical = event.key() == Qt::Key_Down || event.key() == Qt::Key_Up;
    if (modifiers == Qt::AltModifier && isVertical) {
        controller.moveToHunk(direction);
        return true;
    }
    if (modifiers == Qt::ControlModifier && isVertical) {
        controller.showMore(controller.keyboardHunk(), direction > 0 ? GapSide::below : GapSide::above,
                            controller.currentRow());
        return true;
    }
    const bool isEnd = event.key() == Qt::Key_Home || event.key() == Qt::Key_End;
    if (isEnd && (modifiers & ~Qt::ShiftModifier) == Qt::ControlModifier) {
        Q_EMIT controller.endRequested(event.key() == Qt::Key_Home ? -1 : 1, modifiers.testFlag(Qt::ShiftModifier));
        return true;
    }
    if (event.key() == Qt::Key_F7 && (modifiers == Qt::NoModifier || modifiers == Qt::ShiftModifier)) {
        Q_EMIT controller.changeRequested(modifiers == Qt::NoModifier ? 1 : -1);
        return true;
    }
    return false;
}

bool handleMovement(DiffController& controller, const QKeyEvent& event, int page)
{
    const bool extends = modifiersOf(event) == Qt::ShiftModifier;
    if (modifiersOf(event) != Qt::NoModifier && !extends)
        return false;
    const int all = controller.diff().lines().count();
    switch (event.key()) {
    case Qt::Key_Up:
        controller.moveBy(-1, extends);
        return true;
    case Qt::Key_Down:
        controller.moveBy(1, extends);
        return true;
    case Qt::Key_PageUp:
        controller.moveBy(-page, extends);
        return true;
    case Qt::Key_PageDown:
        controller.moveBy(page, extends);
        return true;
    case Qt::Key_Home:
        controller.moveBy(-all, extends);
        return true;
    case Qt::Key_End:
        controller.moveBy(all, extends);
        return true;
    case Qt::Key_Left:
        return controller.moveToSide(DiffSide::before);
    case Qt::Key_Right:
        return controller.moveToSide(DiffSide::after);
    default:
        return false;
    }
}

bool handlePlain(DiffController& controller, const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_N:
        controller.moveOn(1);
        return true;
    case Qt::Key_P:
        controller.moveOn(-1);
        return true;
    case Qt::Key_S:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        controller.requestFromKey(ActionVerb::stage);
        return true;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        controller.requestFromKey(ActionVerb::discard);
        return true;
    case Qt::Key_Space:
        controller.toggleCurrent();
        return true;
    case Qt::Key_Escape:
        if (controller.selection().isEmpty())
            return false;
        controller.setSelection({});
        return true;
    default:
        return false;
    }
}

} // namespace

bool isDiffKey(const QKeyEvent& event)
{
    const bool isPlain = (modifiersOf(event) & ~Qt::ShiftModifier) == Qt::NoModifier;
    return (isPlain && event.key() != Qt::Key_Escape && event.key() < Qt::Key_F1) ||
           event.matches(QKeySequence::Copy) || event.matches(QKeySequence::SelectAll);
}

bool handleDiffKey(DiffController& controller, const QKeyEvent& event, int page)
{
    return handleWithModifier(controller, event) || handleMovement(controller, event, page) ||
           (modifiersOf(event) == Qt::NoModifier && handlePlain(controller, event));
}

} // namespace plovik
