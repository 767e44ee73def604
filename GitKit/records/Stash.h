// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Date.h"

#include <string>

namespace gitkit {

/// One entry of the stash list.
struct Stash {
    std::string ref; ///< reflog selector at the time of reading, stash@{0}
    std::string hash;
    Date date;
    std::string message;

    const std::string& id() const { return hash; }

    bool operator==(const Stash&) const = default;
};

/// Whether a new stash takes the untracked files along.
enum class UntrackedFiles { leave, include };

/// Whether a stash stays in the list once it has been applied.
enum class StashUse { apply, pop };

} // namespace gitkit
