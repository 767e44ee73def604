// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Absorb.h"
#include "GitKit/records/Movable.h"
#include "GitKit/records/Rebase.h"
#include "GitKit/records/RewriteOutcome.h"
#include "GitKit/records/RewritePlan.h"

#include <cstdint>
#include <string>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

// What a plan for the newest commits needs, for Latest. The functions may be called on any thread, block, and throw
// gitkit::GitError.

/// Whose commits are meant.
struct MovableQuestion {
    std::string branch = {}; ///< full name; empty for HEAD
    std::string tip = {};    ///< full hash that it has, so that another one asks again; empty before the first commit

    bool operator==(const MovableQuestion&) const = default;
};

/// Reads which commits of a branch may be changed.
gitkit::MovableCommits readMovable(const gitkit::GitRepository& repo, const MovableQuestion& question);

/// Finds out what putting commits on top of another one comes to, and leaves nothing behind.
gitkit::RebaseProposal readRebase(const gitkit::GitRepository& repo, const gitkit::RebaseQuestion& question);

/// Finds out what a plan comes to, and leaves nothing behind.
gitkit::RewriteOutcome readRehearsal(const gitkit::GitRepository& repo, const gitkit::RewritePlan& plan);

/// Finds out which commits the staged changes belong to. `reading` counts up, so that it is found out again.
gitkit::AbsorbProposal readAbsorbProposal(const gitkit::GitRepository& repo, const std::int64_t& reading);

} // namespace plovik
