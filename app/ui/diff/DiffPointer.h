// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <Qt>

namespace plovik {

class DiffController;
class DiffGeometry;

/// Selects with the pointer: lines in the gutter, text in the code. Knows no widget; it is told where the pointer is.
/// Main thread.
class DiffPointer {
public:
    /// Both outlive the pointer.
    DiffPointer(DiffController& controller, const DiffGeometry& geometry);

    /// Puts the cursor under the pointer.
    void putCursor(QPoint point);
    /// Begins a selection at a row of code; Shift extends the one before, Ctrl adds a line to it. A press on a header
    /// clears the selection.
    void press(QPoint point, Qt::KeyboardModifiers modifiers);
    void dragTo(QPoint point);
    void release() { drag_ = Drag::none; }
    void selectWord(QPoint point);

    bool isDragging() const { return drag_ != Drag::none; }
    QPoint point() const { return point_; } ///< where it was pressed or dragged to last
    /// Returns whether a press there would select text.
    bool isOverText(QPoint point) const;

private:
    DiffPosition positionAt(QPoint point, DiffSide side) const;
    void pressGutter(QPoint point, Qt::KeyboardModifiers modifiers);
    void pressText(QPoint point, Qt::KeyboardModifiers modifiers);

    DiffController& controller_;
    const DiffGeometry& geometry_;
    enum class Drag { none, lines, text } drag_ = Drag::none;
    QPoint point_;
};

} // namespace plovik
