// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffKeys.h"

#include "app/ui/diff/DiffController.h"

#include <QKeyEvent>

#include <algorithm>
#include <iterator>

namespace plovik {

namespace {

using ActionVerb = DiffAction::Verb;

Qt::KeyboardModifiers modifiersOf(const QKeyEvent& event) { return event.modifiers() & ~Qt::KeypadModifier; }

using Diff = DiffController;

template <auto Method, auto... Arguments>
bool call(Diff& diff)
{
    (diff.*Method)(Arguments...);
    return true;
}

template <GapSide Side>
bool showMore(Diff& diff)
{
    diff.showMore(diff.keyboardHunk(), Side, diff.currentRow());
    return true;
}

bool deselect(Diff& diff)
{
    if (diff.selection().isEmpty())
        return false;
    diff.setSelection({});
    return true;
}

constexpr DiffKey keys[] = {
    {Qt::ALT | Qt::Key_Down, &call<&Diff::moveToHunk, 1>},
    {Qt::ALT | Qt::Key_Up, &call<&Diff::moveToHunk, -1>},
    {Qt::Key_N, &call<&Diff::moveOn, 1>},
    {Qt::Key_P, &call<&Diff::moveOn, -1>},
    {Qt::CTRL | Qt::Key_Down, &showMore<GapSide::below>},
    {Qt::CTRL | Qt::Key_Up, &showMore<GapSide::above>},
    {Qt::Key_F7, &call<&Diff::changeRequested, 1>},
    {Qt::SHIFT | Qt::Key_F7, &call<&Diff::changeRequested, -1>},
    {Qt::CTRL | Qt::Key_Home, &call<&Diff::endRequested, -1, false>},
    {Qt::CTRL | Qt::Key_End, &call<&Diff::endRequested, 1, false>},
    {Qt::Key_Return, &call<&Diff::requestFromKey, ActionVerb::stage>},
    {Qt::Key_S, &call<&Diff::requestFromKey, ActionVerb::stage>},
    {Qt::Key_Delete, &call<&Diff::requestFromKey, ActionVerb::discard>},
    {Qt::Key_Backspace, &call<&Diff::requestFromKey, ActionVerb::discard>},
    {Qt::Key_Space, &call<&Diff::toggleCurrent>},
    {Qt::Key_Escape, &deselect},
};

/// Does what a key of the table means, which Enter on the keypad shares with Return.
bool handleListed(DiffController& controller, const QKeyEvent& event)
{
    const int key = event.key() == Qt::Key_Enter ? Qt::Key_Return : event.key();
    const QKeyCombination pressed(modifiersOf(event), static_cast<Qt::Key>(key));
    const auto found = std::ranges::find(keys, pressed, &DiffKey::keys);
    return found != std::end(keys) && found->act(controller);
}

bool extendToEnd(DiffController& controller, const QKeyEvent& event)
{
    const bool isEnd = event.key() == Qt::Key_Home || event.key() == Qt::Key_End;
    if (!isEnd || modifiersOf(event) != (Qt::ControlModifier | Qt::ShiftModifier))
        return false;
    Q_EMIT controller.endRequested(event.key() == Qt::Key_Home ? -1 : 1, true);
    return true;
}

/// Moves the cursor, or with Shift the end of the selection.
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

} // namespace

std::span<const DiffKey> diffKeys() { return keys; }

bool isDiffKey(const QKeyEvent& event)
{
    const bool isPlain = (modifiersOf(event) & ~Qt::ShiftModifier) == Qt::NoModifier;
    return (isPlain && event.key() != Qt::Key_Escape && event.key() < Qt::Key_F1) ||
           event.matches(QKeySequence::Copy) || event.matches(QKeySequence::SelectAll);
}

bool handleDiffKey(DiffController& controller, const QKeyEvent& event, int page)
{
    return handleListed(controller, event) || extendToEnd(controller, event) || handleMovement(controller, event, page);
}

} // namespace plovik
