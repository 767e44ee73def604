// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>

#include <vector>

namespace plovik {

class DiffDocument;
class DiffLines;

/// The sizes of a diff's rows and columns in device-independent pixels, as the code font makes them. Value.
struct DiffMetrics {
    QFont codeFont, numberFont;
    double cell = 8;     ///< width of one column of code
    int lineHeight = 20; ///< 20 at 12 points
    int hunkHeight = 28;
    int numberWidth = 0;
    int tickWidth = 0;     ///< of the column of ticks before the numbers; 0 without ticks
    int gutterWidth = 0;   ///< of ticks and numbers: both numbers, or the one of a side
    int codeLeft = 0;      ///< where code begins in its cell, behind the sign
    int hunkTextLeft = 0;  ///< where a header's text begins, behind the buttons that show more lines
    int wrapColumns = 0;   ///< the most columns of code in a line; 0 if long ones go on out of sight
    std::vector<int> tops; ///< of each line, and the end of the last one

    int functionBarHeight = 24;
    static constexpr int margin = 12;
    static constexpr int numberGap = 20;

    static constexpr int moreLeft = 8;   ///< of the first button that shows more lines
    static constexpr int moreWidth = 24; ///< from one such button to the next

    /// Returns the height of the bar above a diff.
    static int barHeight();
    /// Measures for cells of a width in which long lines are wrapped; 0 if they are not. Ticks need a column of their own.
    static DiffMetrics of(const DiffDocument& document, const DiffLines& lines, int wrapWidth, int tickWidth = 0);
    /// Returns how many columns of code have room in a cell that wraps lines.
    int columnsIn(int wrapWidth) const;
    /// Places the lines.
    void layOut(const DiffDocument& document, const DiffLines& lines, int wrapWidth);

    int top(int line) const { return tops[static_cast<std::size_t>(line)]; }
    int height(int line) const { return top(line + 1) - top(line); }
    int total() const { return tops.back(); }
    /// Returns the line at a height, the first or last one for a height outside of them, or -1 when there are none.
    int lineAt(int y) const;
};

} // namespace plovik
