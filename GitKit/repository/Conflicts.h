// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Conflict.h"
#include "GitKit/records/OperationInProgress.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// What is in conflict, and what each side has. Any thread; these block and throw as the methods of GitRepository do.

/// What is known of the action that has left conflicts.
struct ConflictOrigin {
    std::filesystem::path gitDirectory; ///< what gitDirectories() calls the working tree's own
    std::optional<OperationInProgress> operation = {};
    std::string stash = {}; ///< hash of the stash that was applied last, if it was this; empty where that is not known

    bool operator==(const ConflictOrigin&) const = default;
};

/// The commits that were merged, as full hashes; empty where they cannot be known. The base may be missing alone.
struct MergedCommits {
    std::string base, left, right;
};
MergedCommits mergedCommits(const GitRepository& repo, const ConflictOrigin& origin);

/// Returns all conflicts, in the order of their paths, with the names of the sides.
ConflictList conflictList(const GitRepository& repo, const ConflictOrigin& origin);

/// Returns how the sides are called.
ConflictNames conflictNames(const GitRepository& repo, const ConflictOrigin& origin);

/// The contents of a conflict's sides as they are in the repository: nullopt for a side without a file, for a submodule,
/// and for what is larger than the limit. A link's content is its target.
struct ConflictContents {
    std::optional<std::string> base, left, right;
    /// What the working file holds, with the line ends and the encoding that it would have in the repository; nullopt when
    /// it is no ordinary file, or too large.
    std::optional<std::string> working;

    bool operator==(const ConflictContents&) const = default;
};
ConflictContents conflictContents(const GitRepository& repo, const Conflict& conflict, std::size_t limit);

/// Returns what is known of a submodule's commits; nullopt where it is not here or does not have them.
std::optional<SubmoduleSides> submoduleSides(const GitRepository& repo, const Conflict& conflict);

} // namespace gitkit
