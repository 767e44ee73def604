// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace gitkit {

/// Commits whose changes are made again, or taken back, on top of what is checked out.
struct Pick {
    std::vector<std::string> commits; ///< full hashes, the oldest first
    int parent = 0; ///< number of the parent, from 1, whose side a merge is seen from; 0 for commits that are no merges

    bool operator==(const Pick&) const = default;
};

} // namespace gitkit
