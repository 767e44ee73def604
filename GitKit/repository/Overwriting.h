// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Stash.h"

#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// What git would lose without a word, found before the command runs. All of these block, and throw GitError with
// ErrorKind::wouldOverwriteUnknownFiles or operationUnfinished, besides what the methods of GitRepository throw.

/// Throws when a stash would delete files that it does not keep: those that stand in the place of a deleted file, or of a
/// folder above it, which git puts back.
void requireStashKeeps(const GitRepository& repo, UntrackedFiles untracked);

/// Throws when a merge, cherry-pick or revert is in progress, which `command` would end without a word: the next commit
/// would have one parent.
void requireNothingBegun(const GitRepository& repo, const char* command);

/// Throws when an ignored file stands where `listed` names a file, which git would write there without a word. `listed`
/// is a command that lists paths, each ended by a zero byte; when it fails, nothing is looked at. `command` is the one that
/// would write.
void requireIgnoredStay(const GitRepository& repo, const char* command, const std::vector<std::string>& listed);

} // namespace gitkit
