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

/// Whether what was staged in an applied stash is staged again, or changed in the working tree alone.
enum class StagedPart { restored, lost };

/// What has become of changes that were stashed while something else ran.
enum class StashedAway {
    nothing,     ///< none are stashed: they are back as they were, or there were none
    kept,        ///< the stash is in the list, and it was not applied
    conflicting, ///< it was applied with conflicts and is in the list
    unstaged,    ///< it was applied, but what was staged is not staged again; it is in the list
};

} // namespace gitkit
