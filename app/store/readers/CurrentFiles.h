// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangedFiles.h"

#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

/// A change that had to wait for another one may find the files in another state. These functions read their states
/// again, on the worker's threads.

/// Returns the files with their present states, without those that have no change any more. Throws as
/// requireNoNewConflicts() does.
std::vector<gitkit::FileChange> currentFiles(const gitkit::GitRepository& repo, const gitkit::ChangedFiles& files);

/// Throws std::runtime_error, with a sentence for the user, when a file has become conflicted since it was listed.
/// Acting on it would record or lose a side that the user has not seen.
void requireNoNewConflicts(const gitkit::GitRepository& repo, const gitkit::ChangedFiles& files);

} // namespace plovik
