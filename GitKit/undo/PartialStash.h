// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileChange.h"
#include "GitKit/records/PartialChange.h"

#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Stashes of a part of the changes: commits as `git stash` makes them, from what is meant alone, and the rest stays as it
// is. All functions block and throw as the methods of GitRepository do; callers keep the writers of one repository apart.
// They throw before anything has changed where an operation is in progress, and where the part cannot be taken out of
// the rest. The stash is in the list before anything is taken away, and stays there when that fails half-way: with a filter
// that fails, git can write neither the one state nor the other.

/// Returns the paths that stashFiles() takes away.
std::vector<std::string> pathsToStash(const std::vector<FileChange>& files);

/// Stashes these files, staged or not, untracked ones too. `message` may be empty.
void stashFiles(const GitRepository& repo, const std::vector<FileChange>& files, const std::string& message);

/// Returns the paths that have something staged.
std::vector<std::string> stagedPaths(const GitRepository& repo);

/// Stashes what is staged. Changes that are not staged stay in their files. Throws when a file has such changes in the lines
/// of a staged one.
void stashStaged(const GitRepository& repo, const std::string& message);

/// Stashes some lines of a file that are not staged; `change` is what discardPart() takes.
void stashLines(const GitRepository& repo, const PartialChange& change, const std::string& message);

/// Returns the full hash of the commit at which a stash was made.
std::string stashBase(const GitRepository& repo, const std::string& stash);

} // namespace gitkit
