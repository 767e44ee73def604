// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Worktree.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

class GitRepository;

// The working trees that share a repository. Any thread; these block and throw as the methods of GitRepository do.
// `folder` is what a Worktree says.

/// Returns whether the repository may have more than one working tree. Runs nothing.
bool mayHaveWorktrees(const std::filesystem::path& root);

/// Returns all of them, also this one. Runs nothing and returns an empty list where mayHaveWorktrees() is false.
WorktreeList worktrees(const GitRepository& repo);

/// Parses what `git worktree list --porcelain` prints, whose lines and records end with `end`: NUL or a line feed. With
/// line feeds, a record that holds a line of no known kind is counted as unreadable.
WorktreeList parseWorktrees(std::string_view output, char end);

/// Returns the folder of the working tree that a refusal names as the place where a branch is checked out. Returns nullopt
/// where that is this working tree, and where the folder is gone.
std::optional<std::filesystem::path> otherWorktree(const GitRepository& repo, const std::string& message);

/// Makes a working tree. A new branch tracks nothing.
void addWorktree(const GitRepository& repo, const NewWorktree& tree);

/// `reason` may be empty.
void lockWorktree(const GitRepository& repo, const std::filesystem::path& folder, const std::string& reason);
void unlockWorktree(const GitRepository& repo, const std::filesystem::path& folder);

/// Returns what removing a working tree would take from the user. Of one that is missing only the commits are known.
WorktreeLosses worktreeLosses(const GitRepository& repo, const Worktree& tree);

/// Removes a working tree. Files that are in no commit are moved first into the repository's folder `plovik/saved`, also
/// ignored ones, which git would delete without a word; what is staged goes to its folder `.staged`. Throws, with
/// everything in its place, when there are changes, a lock or submodules and `how` does not say to go on.
RemovedWorktree removeWorktree(const GitRepository& repo, const Worktree& tree, const WorktreeRemoval& how);

/// Has git forget a working tree whose folder is gone.
void forgetWorktree(const GitRepository& repo, const std::filesystem::path& folder);

} // namespace gitkit
