// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

class GitRepository;

// The working trees that share a repository. Any thread; these block and throw as the methods of GitRepository do.

/// One of the working trees.
struct Worktree {
    std::filesystem::path folder; ///< absolute
    std::string branch;           ///< full name of what is checked out there; empty for a detached HEAD
    bool isBare = false;          ///< it is the repository itself, without files

    bool operator==(const Worktree&) const = default;
};

std::vector<Worktree> worktrees(const GitRepository& repo);

/// Parses what `git worktree list --porcelain` prints, whose lines and records end with `end`: NUL or a line feed.
std::vector<Worktree> parseWorktrees(std::string_view output, char end);

/// Returns the folder of the working tree that a refusal names as the place where a branch is checked out. Returns nullopt
/// where that is this working tree, and where the folder is gone.
std::optional<std::filesystem::path> otherWorktree(const GitRepository& repo, const std::string& message);

} // namespace gitkit
