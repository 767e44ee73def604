// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/LineRange.h"
#include "GitKit/records/ParsedDiff.h"

#include <optional>
#include <string>
#include <vector>

namespace plovik {

/// How the old lines of a diff of the working copy are found again in the commit that is checked out. Value.
struct LinesInHead {
    std::string revision; ///< full hash of that commit
    std::string path;     ///< as that commit has it
    std::vector<gitkit::DiffLine> staged =
        {}; ///< from that commit to what the diff begins with; empty where that is the same

    /// Returns where the lines are there; nullopt where that commit has none of them.
    std::optional<gitkit::LineRange> rangeOf(const gitkit::LineRange& lines) const;

    bool operator==(const LinesInHead&) const = default;
};

} // namespace plovik
