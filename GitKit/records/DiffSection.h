// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ParsedDiff.h"

#include <string>

namespace gitkit {

/// One of the diffs of a changed file. The kind tells which one it is; the title is its English name.
struct DiffSection {
    enum class Kind { untracked, conflict, unstaged, staged };

    std::string title; ///< "Untracked", "Conflict", "Unstaged" or "Staged"
    ParsedDiff diff;
    Kind kind = Kind::unstaged;

    const std::string& id() const { return title; }

    bool operator==(const DiffSection&) const = default;
};

} // namespace gitkit
