// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CommitMode.h"
#include "GitKit/records/FileChange.h"
#include "GitKit/records/OperationInProgress.h"
#include "GitKit/records/Trash.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// What git stopped in the middle of: a merge, a rebase, a bisect and the like. Any thread; these block and throw as the
// methods of GitRepository do. `gitDirectory` is what gitDirectories() calls the working tree's own.

/// What is in progress, read from git's own files. Git is run only for the counts of a bisect that differs from
/// `before`, and of several commits that are picked or reverted. What cannot be found out is absent; throws RunStopped
/// only.
std::optional<OperationInProgress> operationInProgress(const GitRepository& repo,
                                                       const std::filesystem::path& gitDirectory,
                                                       const std::optional<OperationInProgress>& before = {});

/// A message that git prepared, cleaned by git's rules for comments and blanks.
std::string withoutComments(const GitRepository& repo, const std::string& message);

/// Takes a step. Callers keep the writers of one repository apart, here and below. Continuing a merge, a cherry-pick or a
/// revert makes its commit with git's own message; `hooks` says whether a hook may refuse that.
void proceed(const GitRepository& repo, const OperationInProgress& operation, OperationStep step,
             CommitHooks hooks = CommitHooks::run);

/// Marks the commit that is checked out.
void mark(const GitRepository& repo, const OperationInProgress::Bisect& bisect, BisectMark mark);

AbortLoss abortLoss(const GitRepository& repo, const OperationInProgress& operation,
                    const std::filesystem::path& gitDirectory);

/// Returns those of `files` that the user changed after git stopped, and may return more where this git does not tell.
/// Git itself may have written files until `slack` later.
std::vector<std::string> changedSinceStop(const GitRepository& repo, const std::filesystem::path& gitDirectory,
                                          const std::vector<FileChange>& files, std::chrono::seconds slack);

/// Resolves conflicts in these paths by taking one side whole; the file is gone when that side has none. A working file
/// goes to the Trash first when it was edited since git wrote it, and when that side does not have it.
void takeSide(const GitRepository& repo, const std::vector<std::string>& paths, ConflictSide side,
              const std::filesystem::path& gitDirectory, const Trash& trash);

} // namespace gitkit
