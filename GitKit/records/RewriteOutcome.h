// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace gitkit {

/// What a plan makes of one of its commits.
struct RewriteMark {
    enum class Kind {
        unknown,   ///< it stands on one that conflicts, or this git cannot tell
        unchanged, ///< it is the very same commit
        rewritten,
        emptied, ///< its change is there already
        conflicts,
        dropped,
    };

    Kind kind = Kind::unknown;
    std::vector<std::string> paths = {}; ///< that conflict

    bool operator==(const RewriteMark&) const = default;
};

/// What a plan comes to.
struct RewriteOutcome {
    enum class Result {
        unknown, ///< this git cannot tell without doing it
        clean,
        conflicts,
    };

    Result result = Result::unknown;
    std::vector<RewriteMark> marks; ///< one a step
    std::string tip = {};           ///< hash of the newest commit; empty unless clean
    std::string tree = {};          ///< hash of its tree
    /// The commits that became others, with what they are now, in the order of the steps. What was dropped is not among it.
    std::vector<std::pair<std::string, std::string>> rewritten = {};

    bool operator==(const RewriteOutcome&) const = default;
};

} // namespace gitkit
