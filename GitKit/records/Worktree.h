// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

/// One of the working trees that share a repository.
struct Worktree {
    std::filesystem::path folder = {};    ///< absolute
    std::string head = {};                ///< the commit that is checked out there; empty where there is none
    std::string branch = {};              ///< full name of what is checked out there; empty for a detached HEAD
    bool isBare = false;                  ///< it is the repository itself, without files
    bool isMain = false;                  ///< it holds the repository, and cannot be removed
    bool isHere = false;                  ///< it is the one that was asked
    bool isMissing = false;               ///< its folder is gone, or is not reachable now
    std::optional<std::string> lock = {}; ///< why it is locked, possibly empty; nullopt when it is not

    /// The branch without refs/heads; empty for a detached HEAD.
    std::string branchName() const { return branch.starts_with("refs/heads/") ? branch.substr(11) : branch; }

    bool operator==(const Worktree&) const = default;
};

struct WorktreeList {
    std::vector<Worktree> trees; ///< the main one first
    int unreadable = 0;          ///< those whose paths this git cannot tell apart from the next line

    bool operator==(const WorktreeList&) const = default;
};

/// A working tree that is to be made.
struct NewWorktree {
    std::filesystem::path folder; ///< absolute; missing or empty
    std::string branch;           ///< without refs/heads
    bool isNewBranch = false;     ///< the branch is made, at `start`
    std::string start = {};       ///< full ref name or hash; empty for HEAD

    bool operator==(const NewWorktree&) const = default;
};

/// A file, or a folder with all that is in it.
struct SizedPath {
    std::string path; ///< from the root of the working tree; a folder ends with a slash
    std::uintmax_t bytes = 0;

    bool operator==(const SizedPath&) const = default;
};

/// What is in a working tree and in no commit of a branch, a tag or a remote.
struct WorktreeLosses {
    std::vector<SizedPath> untracked = {};
    std::vector<SizedPath> ignored = {};
    std::vector<std::string> changed = {}; ///< files that git knows, with changes that are not committed
    int strayCommits = 0;                  ///< commits of its detached HEAD that nothing else leads to
    bool isInOperation = false;            ///< a rebase, a merge or the like has stopped there
    bool hasSubmodules = false;            ///< whose repositories, with all their commits, are inside its git directory

    bool needsForce() const { return !untracked.empty() || !changed.empty(); }

    bool operator==(const WorktreeLosses&) const = default;
};

/// What the user has agreed to for removing a working tree.
struct WorktreeRemoval {
    bool evenChanged = false;
    bool evenLocked = false;
};

/// What became of the files of a removed working tree that are in no commit.
struct RemovedWorktree {
    std::filesystem::path saved; ///< the folder that has them now; empty when there were none
    std::size_t count = 0;       ///< the files and folders that were moved there

    bool operator==(const RemovedWorktree&) const = default;
};

} // namespace gitkit
