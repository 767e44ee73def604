// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

/// From one tree to another, by their hashes.
struct TreeMove {
    std::string from;
    std::string to;
};

/// Moves the files of the working tree by `files` and the index by `index`. What is staged, changed, untracked or only
/// intended stays as it is where the two trees are the same. `changed` are the paths that differ between the index and the
/// files. Blocks; callers keep the writers of one repository apart.
///
/// Throws GitError, before anything is written, when a file that would change was changed by the user, when an untracked
/// file is in the way, and when the index is locked. Ignored files are overwritten: see InTheWay.h.
void moveTrees(const GitRepository& repo, const std::filesystem::path& gitDirectory, const TreeMove& files,
               const TreeMove& index, const std::vector<std::string>& changed);

/// Returns the hash of a tree of what is staged, without the paths in conflict, and leaves the index as it is.
std::string indexTree(const GitRepository& repo, const std::filesystem::path& gitDirectory);

} // namespace gitkit
