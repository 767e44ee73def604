// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/GraphRow.h"
#include "app/ui/widgets/Theme.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

namespace plovik {

/// The places of the lanes in a graph column. All lengths are device-independent pixels.
///
/// Lanes stand closer together where they are many. Those that have no room all the same share a dashed line at the
/// column's edge.
class GraphLanes {
public:
    /// The places of `lanes` lanes in a column of this width.
    GraphLanes(int lanes, double width);

    /// The width that shows all lanes, and the one that shows them far apart.
    static double widthFor(int lanes);
    static double widestFor(int lanes);

    double x(int lane) const { return std::round(left + std::min(lane, shown_) * pitch_); }
    /// Where the lanes lie that have no room.
    double edge() const { return x(shown_); }
    bool isBeyond(int lane) const { return lane >= shown_; }
    double pitch() const { return pitch_; }

    static constexpr double left = 12, right = 10; ///< of the first lane, and after the last

private:
    double pitch_ = 14;
    int shown_ = 1;
};

/// Draws the commit graph beside one row of history. Refers to a row of the caller.
///
/// Lines meet the row's top and bottom edges at fixed places, so that the cells of consecutive rows join.
struct GraphCell {
    const gitkit::GraphRow& row;
    const GraphLanes& lanes;

    /// The line that is lit, and whether that is its part above the middle or below.
    struct Lit {
        int lane = -1;
        bool above = false, below = false;
    };
    Lit lit = {};

    double dotRadius() const;

    /// Draws the cell with its top left corner at `origin`, and leaves antialiasing on. The caller clips to the graph
    /// column.
    void paint(QPainter& painter, QPointF origin, double height, const Theme& theme) const;
};

/// Returns how many lanes a row needs.
int lanesOf(const gitkit::GraphRow& row);

/// Follows the line of the commit in row `of` through the rows around it. Returns for each row what of it is lit.
std::vector<GraphCell::Lit> litLine(std::span<const gitkit::GraphRow> rows, std::size_t of);

} // namespace plovik
