// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"
#include "GitKit/records/Date.h"

#include <string>

namespace gitkit {

/// A ref was moved.
struct RefMove {
    Commit commit;           ///< where it came to; without labels
    Date moved;              ///< when
    std::string action;      ///< git's line, as "commit: Fix the parser"
    bool isOnlyHere = false; ///< no branch, remote branch or tag leads to the commit

    bool operator==(const RefMove&) const = default;
};

} // namespace gitkit
