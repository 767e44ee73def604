// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/RefMove.h"

#include <cstddef>
#include <string>
#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

// What views read of where commits and refs are, for Latest. All functions may be called on any thread, block, and throw
// gitkit::GitError.

struct RefLogRequest {
    std::string ref;  ///< HEAD or a full name
    std::string head; ///< hash of HEAD, which the log follows
    bool operator==(const RefLogRequest&) const = default;
};
/// One row of a ref's log.
struct RefLogRow {
    gitkit::RefMove move;
    /// The branch that was left here, at this row's commit before; empty where none was, or where a newer row has it.
    std::string left = {};
    std::string leftAt = {}; ///< hash of the commit on which it was left

    bool operator==(const RefLogRow&) const = default;
};
/// Reads where the ref was, the newest first. None where nothing was committed yet.
std::vector<RefLogRow> readRefLog(const gitkit::GitRepository& repo, const RefLogRequest& request);
inline constexpr std::size_t mostRefMoves = 500;

/// What stands around a commit.
struct CommitRelations {
    std::vector<gitkit::Commit> children;
    std::vector<std::string> refs; ///< full names of the branches, remote branches and tags that contain it
    std::string tagBefore;         ///< short name of the nearest tag at it or before it; empty if there is none
    std::string tagAfter;          ///< the same for the oldest tag that contains it
};
/// Walks the history from its refs to the commit, given by its full hash.
CommitRelations readCommitRelations(const gitkit::GitRepository& repo, const std::string& hash);

} // namespace plovik
