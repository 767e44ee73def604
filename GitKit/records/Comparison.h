// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"

#include <string>

namespace gitkit {

/// One of two states that are compared.
struct ComparedState {
    std::string hash; ///< of a commit or a tree; empty for the working tree
    std::string name; ///< short name of the ref that was chosen, as bytes; empty for a commit that was

    bool isWorkingTree() const { return hash.empty(); }
    bool operator==(const ComparedState&) const = default;
};

/// What is compared.
struct Comparison {
    enum class Kind {
        states, ///< the one state with the other
        files,  ///< all files of `to`; `from` is the tree without files
        merge   ///< the merge `to` with all its parents at once
    };

    ComparedState from;
    ComparedState to;
    bool sinceParted = false; ///< from the newest common ancestor instead of `from`
    Kind kind = Kind::states;

    bool operator==(const Comparison&) const = default;
};

/// A commit that only one of two histories has.
struct CommitApart {
    enum class Side {
        first,
        second,
        same ///< of either, where the other one has a commit with the same changes
    };

    Side side = Side::first;
    Commit commit;

    bool operator==(const CommitApart&) const = default;
};

} // namespace gitkit
