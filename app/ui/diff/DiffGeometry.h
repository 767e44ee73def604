// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffCell.h"
#include "app/ui/diff/DiffMetrics.h"
#include "app/ui/diff/DiffRowPainter.h"
#include "app/ui/diff/DiffSelection.h"

#include <QPoint>
#include <QStringList>

namespace plovik {

class ShownDiff;

/// Where everything stands in the area that shows one diff: from the top the bar, the sentences, an inset, the rows and
/// more sentences. Tells which row and which character is at a point. In device-independent pixels from the area's top
/// left corner. Main thread.
class DiffGeometry {
public:
    static constexpr int noteGap = 8; ///< between two sentences

    /// `diff` outlives the geometry.
    explicit DiffGeometry(const ShownDiff& diff);

    /// Measures rows and fonts; to be called when they have changed.
    void measure();
    void setWidth(int width);
    int width() const { return width_; }
    void setInsetHeight(int height);
    void setOffset(int offset) { offset_ = offset; } ///< by how much the code is scrolled to the left

    const DiffMetrics& metrics() const { return metrics_; }
    int offset() const { return offset_; }
    int barHeight() const;
    int insetTop() const { return insetTop_; }
    int rowsTop() const { return insetTop_ + insetHeight_; }
    int rowsEnd() const { return rowsTop() + metrics_.total(); }
    QRect rowsArea() const { return {0, rowsTop(), width_, metrics_.total()}; }
    /// Returns the area's height at another width, with an inset of that height.
    int heightFor(int width, int insetHeight) const;
    /// Returns by how much the longest line is longer than its room.
    int hiddenWidth(int width) const;
    /// Returns the room of a sentence that begins at `top`.
    static QRect noteRoom(int top, int width);

    QRect rowRect(int row) const;
    DiffCell cellAt(int line, DiffSide side) const;
    /// Returns the line at a height; the first or last one for a height outside of them, -1 when there are none.
    int lineAt(int y) const { return metrics_.lineAt(y - rowsTop()); }
    DiffSide sideAt(int x) const;
    /// Returns the row nearest to a point; -1 when there are none.
    int rowNear(QPoint point) const;
    /// Returns the row at a point; -1 where there is none.
    int rowAt(QPoint point) const;
    bool isInGutter(int x) const { return x - leftOf(sideAt(x)) < metrics_.codeLeft; }
    /// Returns whether a point is over the ticks of a split.
    bool isOverTicks(int x) const { return x - leftOf(sideAt(x)) < metrics_.tickWidth; }
    DiffPosition positionAt(QPoint point, DiffSide side) const;
    /// Returns where a unit of a row's source begins, from the left end of the row's cell.
    int xOf(int row, qsizetype source) const { return rowPainter(nullptr).xOf(row, source); }
    /// Returns the line in which a unit of a row's source stands; a row that is wrapped has several.
    QRect lineOf(int row, qsizetype source) const;

    int cellWidth() const;
    /// Returns what draws the rows, for one use. `found` is what a search has found; null without a search. Of wrapped
    /// rows only the lines in `exposed` are drawn.
    DiffRowPainter rowPainter(const DiffFound* found, const QRect& exposed = {}) const;

private:
    int wrapWidth() const;
    int leftOf(DiffSide side) const;
    static int notesHeight(const QStringList& notes, int width);

    const ShownDiff& diff_;
    DiffMetrics metrics_;
    int width_ = 0;
    int offset_ = 0;
    int insetTop_ = 0;
    int insetHeight_ = 0;
};

} // namespace plovik
