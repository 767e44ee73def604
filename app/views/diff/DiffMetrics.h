#pragma once

#include <QFont>

#include <vector>

namespace plovik {

class DiffDocument;

/// Where things stand in a diff, in device-independent pixels: follows the code font. Value.
struct DiffMetrics {
    QFont codeFont, numberFont;
    double cell = 8;     ///< width of one column of code
    int lineHeight = 20; ///< 20 at 12 points
    int hunkHeight = 28;
    int numberWidth = 0;
    int gutterWidth = 0;   ///< both numbers
    int codeLeft = 0;      ///< where code begins, behind the sign
    std::vector<int> tops; ///< of each row, and the end of the last

    static constexpr int margin = 12;
    static constexpr int numberGap = 20;

    static DiffMetrics of(const DiffDocument& document);

    int top(int row) const { return tops[static_cast<std::size_t>(row)]; }
    int height(int row) const { return top(row + 1) - top(row); }
    int total() const { return tops.back(); }
    /// The row at a height; the first or last one outside of them, -1 when there are none.
    int rowAt(int y) const;
};

} // namespace plovik
