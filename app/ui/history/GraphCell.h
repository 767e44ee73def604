// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/GraphRow.h"
#include "app/ui/widgets/Theme.h"

#include <QPainter>

#include <algorithm>

namespace plovik {

/// Draws the commit graph beside one row of history. Refers to a row of the caller. All lengths are device-independent
/// pixels.
///
/// Lines meet the row's top and bottom edges at fixed columns, so that the cells of consecutive rows join.
struct GraphCell {
    const gitkit::GraphRow& row;

    /// The most columns that are shown. All further ones share a dashed line at the cell's edge, and their dots are rings.
    static constexpr int widestColumns = 12;

    static constexpr double columnX(int column)
    {
        return std::min(column, widestColumns - 1) * 14.0 + 12.0 + (column < widestColumns ? 0.0 : 6.0);
    }
    static constexpr double widthFor(int lanes) { return (std::min(lanes, widestColumns) - 1) * 14.0 + 12.0 + 10.0; }
    double dotRadius() const { return row.bottom.size() > 1 ? 4.5 : 4.0; }

    /// Draws the cell with its top left corner at `origin`, and leaves antialiasing on. The caller clips to the graph
    /// column.
    void paint(QPainter& painter, QPointF origin, double height, const Theme& theme) const;
};

} // namespace plovik
