// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Merge.h"
#include "GitKit/repository/ThrowawayObjects.h"

#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Putting changes together in memory. Nothing is left in the repository. These block and throw as the methods of
// GitRepository do.

/// What merging two commits has given.
struct Rehearsed {
    MergePreview::Outcome outcome = MergePreview::Outcome::unknown;
    std::string tree;
    std::vector<std::string> conflicts; ///< paths
};
Rehearsed rehearse(const GitRepository& repo, const ThrowawayObjects& objects, const std::string& ours,
                   const std::string& theirs);

/// Returns a commit of a tree. Merged with another child of its parent, that parent is the base.
std::string rehearsedCommit(const GitRepository& repo, const ThrowawayObjects& objects, const std::string& parent,
                            const std::string& tree);

/// Returns how many files differ between two trees or commits.
int changedBetween(const GitRepository& repo, const ThrowawayObjects& objects, const std::string& before,
                   const std::string& after);

} // namespace gitkit
