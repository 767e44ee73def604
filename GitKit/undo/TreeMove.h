// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Moving the index and the files of a working tree by what differs between two trees. Everything else stays as it is:
// what is staged, changed, untracked or only intended. Blocking; throws as the methods of GitRepository do; callers keep
// the writers of one repository apart. `gitDirectory` is what gitDirectories() calls the working tree's own.

/// What is staged.
struct IndexContents {
    std::string tree;                   ///< without the paths in conflict
    std::vector<std::string> conflicts; ///< the entries in conflict, as "MODE HASH STAGE\tPATH"
};
IndexContents indexContents(const GitRepository& repo, const std::filesystem::path& gitDirectory);

/// Returns a tree of what is staged, with the contents of the files that are in conflict and of these. The index stays as
/// it is.
std::string levelTree(const GitRepository& repo, const std::filesystem::path& gitDirectory,
                      const std::vector<std::string>& paths);

/// From one state to another, by the hashes of trees and the entries in conflict.
struct TreeMove {
    std::string from;
    std::string to;
    std::vector<std::string> fromConflicts = {};
    std::vector<std::string> toConflicts = {};
};

/// Returns the paths that differ between the two, conflicts included.
std::set<std::string> movedPaths(const GitRepository& repo, const TreeMove& move);
/// Returns the paths that are not there any more after it, the ones in conflict left out.
std::vector<std::string> lostPaths(const GitRepository& repo, const TreeMove& move);
/// Returns `tree` with what differs between the two at these paths, and nothing else of it.
std::string partlyMoved(const GitRepository& repo, const std::string& tree, const TreeMove& move,
                        const std::set<std::string>& paths);
/// Returns the submodules of which the two name different commits. What they have checked out does not move.
std::vector<std::string> movedSubmodules(const GitRepository& repo, const TreeMove& move);
/// Returns the moved paths whose files are not as `move.from` has them, nor as `move.to` does.
std::vector<std::string> editedFiles(const GitRepository& repo, const std::filesystem::path& gitDirectory,
                                     const TreeMove& move);
/// Returns the moved paths whose index entries are not as `move.from` has them.
std::vector<std::string> editedEntries(const GitRepository& repo, const std::filesystem::path& gitDirectory,
                                       const TreeMove& move);

/// Returns those of the files that have the contents that `tree` has for them.
std::vector<std::string> filesAsIn(const GitRepository& repo, const std::filesystem::path& gitDirectory,
                                   const std::vector<std::string>& paths, const std::string& tree);

/// Moves the files, also those that were edited. Throws before anything is written when a file that git does not know is
/// in the way, unless it is among `known`; ignored ones are overwritten: see InTheWay.h.
void moveFiles(const GitRepository& repo, const std::filesystem::path& gitDirectory, const TreeMove& move,
               const std::vector<std::string>& known = {});
/// Moves the index.
void moveIndex(const GitRepository& repo, const std::filesystem::path& gitDirectory, const TreeMove& move);

} // namespace gitkit
