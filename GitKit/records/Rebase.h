// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Movable.h"
#include "GitKit/records/RewriteOutcome.h"
#include "GitKit/records/RewritePlan.h"

#include <string>
#include <vector>

namespace gitkit {

/// Which commits are put on top of what.
struct RebaseQuestion {
    std::string branch;          ///< full name; empty for HEAD
    std::string from = {};       ///< full hash of the oldest commit; empty: all that the branch has and `onto` has not
    std::string onto = {};       ///< full name of a ref, or a full hash
    bool squashesFixups = false; ///< commits that say where they belong go there

    bool operator==(const RebaseQuestion&) const = default;
};

/// What that comes to.
struct RebaseProposal {
    RewritePlan plan;
    RewriteOutcome outcome;
    std::vector<MovableCommit> commits; ///< of the plan, the oldest first
    int fixups = 0;                     ///< commits that say where they belong
    std::string publishedOn = {};       ///< a remote branch that has some of them; empty without any
    std::vector<BranchOnCommit> branches = {};

    bool operator==(const RebaseProposal&) const = default;
};

} // namespace gitkit
