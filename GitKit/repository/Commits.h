// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangeCounts.h"
#include "GitKit/records/CommitKind.h"
#include "GitKit/records/HistoryScope.h"

#include <optional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Finding single commits, and what is costly to know of them. Any thread; these block and throw as the methods of
// GitRepository do.

/// The hash of the commit that a hash, a part of one or a ref's name stands for.
std::string resolveCommit(const GitRepository& repo, const std::string& name);

/// How many commits GitRepository::log() lists before the one with this full hash; nullopt when `scope` does not hold
/// it. Costs what walking the whole history costs.
std::optional<int> position(const GitRepository& repo, const HistoryScope& scope, const std::string& hash);

/// What leaving HEAD leaves behind. Value.
struct LeftBehind {
    int commits = 0;
    std::string head; ///< hash of a detached HEAD; empty while a branch is checked out

    bool operator==(const LeftBehind&) const = default;
};

/// Counts the commits that only a detached HEAD leads to: neither a branch or tag nor `target`, which is a hash or a
/// ref's full name. Reads HEAD as it is now.
LeftBehind commitsLeftBehind(const GitRepository& repo, const std::string& target);

/// How many lines each file of GitRepository::commitDetail() adds and removes, in the same order. Costs what all the
/// diffs cost.
std::vector<ChangeCounts> changeCounts(const GitRepository& repo, const std::string& hash, CommitKind kind);

} // namespace gitkit
