// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace gitkit {

/// What the graph draws beside one commit. Lanes are columns, numbered from 0 at the left.
struct GraphRow {
    int lane = 0;            ///< the commit's dot
    std::vector<int> top;    ///< lanes that come down from the row above into the dot
    std::vector<int> pass;   ///< lanes that run through the row without touching the dot
    std::vector<int> bottom; ///< lanes that leave the dot downwards, one a parent, in the parents' order

    bool operator==(const GraphRow&) const = default;
};

} // namespace gitkit
