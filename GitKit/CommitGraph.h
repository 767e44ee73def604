// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"
#include "GitKit/records/GraphRow.h"

#include <span>
#include <vector>

namespace gitkit {

/// The branch-and-merge graph beside a list of commits.
struct CommitGraph {
    std::vector<GraphRow> rows; ///< one for each commit, in the order of the commits
    int laneCount = 1;          ///< the number of lanes in the widest row; at least 1

    /// Lays out commits, which are given newest first. Lanes never move, and the next line that needs a lane takes the
    /// first free one. A parent outside the list keeps its lane to the last row. Takes time in proportion to commits
    /// times lanes.
    static CommitGraph layout(std::span<const Commit> commits);

    bool operator==(const CommitGraph&) const = default;
};

} // namespace gitkit
