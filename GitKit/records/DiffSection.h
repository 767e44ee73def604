// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ParsedDiff.h"

#include <string>

namespace gitkit {

/// One titled diff of a changed file.
struct DiffSection {
    enum class Kind { unstaged, staged, other };

    std::string title; ///< "Untracked", "Conflict", "Unstaged" or "Staged"
    ParsedDiff diff;
    Kind kind = Kind::other;

    const std::string& id() const { return title; }

    bool operator==(const DiffSection&) const = default;
};

} // namespace gitkit
