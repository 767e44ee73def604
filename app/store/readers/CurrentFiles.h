// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileChange.h"

#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

/// What was clicked while something else ran is done after it, when the files may be in another state. These look again,
/// on the worker's threads.

/// Returns the same files as git has them now, without those that have no change any more. Throws as
/// requireNoNewConflicts() does.
std::vector<gitkit::FileChange> currentFiles(const gitkit::GitRepository& repo,
                                             const std::vector<gitkit::FileChange>& files);

/// Throws std::runtime_error, with a sentence for the user, when a file has come into conflict since it was listed:
/// acting on it would record or lose a side that nobody has seen.
void requireNoNewConflicts(const gitkit::GitRepository& repo, const std::vector<gitkit::FileChange>& files);

} // namespace plovik
