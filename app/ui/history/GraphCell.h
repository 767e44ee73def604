// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/GraphRow.h"
#include "app/ui/widgets/Theme.h"

#include <QPainter>

#include <algorithm>

namespace plovik {

/// Draws the commit graph beside one row of history. All lengths are device-independent pixels.
///
/// Lines run from the row's top edge to its bottom edge at fixed columns, so that the cells of consecutive rows join.
struct GraphCell {
    const gitkit::GraphRow& row;

    /// Columns shown at most; lines of further columns are cut off at the cell's edge.
    static constexpr int widestColumns = 12;

    static constexpr double columnX(int column) { return column * 14.0 + 12.0; }
    static constexpr double widthFor(int lanes) { return (std::min(lanes, widestColumns) - 1) * 14.0 + 12.0 + 10.0; }
    double dotRadius() const { return row.bottom.size() > 1 ? 4.5 : 4.0; }

    /// Draws with the cell's top left corner at `origin`. Antialiasing must be on; what lies outside the graph column
    /// is the caller's to clip.
    void paint(QPainter& painter, QPointF origin, double height, const Theme& theme) const;
};

} // namespace plovik
