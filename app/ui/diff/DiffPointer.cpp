// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffPointer.h"

#include "app/ui/diff/DiffController.h"
#include "app/ui/diff/DiffGeometry.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace plovik {

DiffPointer::DiffPointer(DiffController& controller, const DiffGeometry& geometry)
    : controller_(controller), geometry_(geometry)
{}

void DiffPointer::putCursor(QPoint point)
{
    point_ = point;
    controller_.setKeyboardSide(geometry_.sideAt(point.x()) == DiffSide::before ? DiffSide::before : DiffSide::after);
    controller_.setCurrentRow(geometry_.rowNear(point));
}

/// A position in a line without text counts as behind its end, so that a selection that ends there includes the line.
DiffPosition DiffPointer::positionAt(QPoint point, DiffSide side) const
{
    DiffPosition at = geometry_.positionAt(point, side);
    const ShownDiff& diff = controller_.diff();
    const int row = diff.lines().rowAt(at.line, side);
    if (row >= 0 && diff.document().row(row).isCode() && diff.document().text(row).isEmpty())
        at.column = 1;
    return at;
}

void DiffPointer::press(QPoint point, Qt::KeyboardModifiers modifiers)
{
    putCursor(point);
    if (controller_.diff().document().row(controller_.currentRow()).kind == DiffDocument::Kind::hunk)
        controller_.setSelection({});
    else if (geometry_.isOverTicks(point.x()))
        controller_.turnTick(controller_.currentRow());
    else if (geometry_.isInGutter(point.x()))
        pressGutter(point, modifiers);
    else
        pressText(point, modifiers);
}

void DiffPointer::pressGutter(QPoint point, Qt::KeyboardModifiers modifiers)
{
    const int line = geometry_.lineAt(point.y());
    DiffSelection selection = controller_.selection();
    drag_ = Drag::lines;
    if (modifiers.testFlag(Qt::ShiftModifier))
        selection.extendLines(line);
    else if (modifiers.testFlag(Qt::ControlModifier))
        selection.toggleLine(line, geometry_.sideAt(point.x()));
    else
        selection.startLines(line, geometry_.sideAt(point.x()));
    controller_.setSelection(selection);
}

void DiffPointer::pressText(QPoint point, Qt::KeyboardModifiers modifiers)
{
    const DiffSide side = geometry_.sideAt(point.x());
    DiffSelection selection = controller_.selection();
    drag_ = Drag::text;
    if (modifiers.testFlag(Qt::ShiftModifier))
        selection.extendText(positionAt(point, side));
    else
        selection.startText(positionAt(point, side), side);
    controller_.setSelection(selection);
}

void DiffPointer::dragTo(QPoint point)
{
    point_ = point;
    DiffSelection selection = controller_.selection();
    const int line = geometry_.lineAt(point.y());
    if (drag_ == Drag::lines)
        selection.extendLines(line);
    else
        selection.extendText(positionAt(point, selection.textSide()));
    controller_.setCurrentRow(controller_.diff().lines().nearestRow(line, controller_.keyboardSide()));
    if (selection != controller_.selection())
        controller_.setSelection(selection);
}

void DiffPointer::selectWord(QPoint point)
{
    const ShownDiff& diff = controller_.diff();
    const DiffSide side = geometry_.sideAt(point.x());
    const DiffPosition at = positionAt(point, side);
    const int row = diff.lines().rowAt(at.line, side);
    if (row < 0 || !diff.document().row(row).isCode())
        return;
    const QString text = diff.document().text(row).left(ShownLine::mostShown);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    finder.setPosition(std::min(at.column + 1, text.size()));
    const qsizetype begin = std::max<qsizetype>(0, finder.toPreviousBoundary());
    const qsizetype end = std::max(begin, finder.toNextBoundary());
    DiffSelection selection;
    selection.startText({at.line, begin}, side);
    selection.extendText({at.line, end});
    controller_.setSelection(selection);
}

bool DiffPointer::isOverText(QPoint point) const
{
    const int row = geometry_.rowAt(point);
    return row >= 0 && controller_.diff().document().row(row).isCode() && !geometry_.isInGutter(point.x());
}

} // namespace plovik
