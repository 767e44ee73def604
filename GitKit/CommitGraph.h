// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"
#include "GitKit/records/GraphRow.h"

#include <span>
#include <vector>

namespace gitkit {

/// The branch-and-merge graph beside a list of commits.
struct CommitGraph {
    std::vector<GraphRow> rows; ///< one a commit, in the commits' order
    int laneCount = 1;          ///< the widest that the graph gets; never below 1

    /// Lays out commits given newest first. Lanes never move; a freed lane is taken again by the next line that needs
    /// one. A parent outside the list keeps its lane to the last row. Costs commits times lanes.
    static CommitGraph layout(std::span<const Commit> commits);

    bool operator==(const CommitGraph&) const = default;
};

} // namespace gitkit
