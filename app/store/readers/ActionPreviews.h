// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Merge.h"
#include "GitKit/records/Push.h"
#include "GitKit/records/Reset.h"

#include <string>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

// What sheets say an action would do, for Latest. The functions may be called on any thread, block, and throw
// gitkit::GitError.

/// Reads what moving HEAD to a commit would lose. `target` is a full hash.
gitkit::ResetLoss readResetLoss(const gitkit::GitRepository& repo, const std::string& target);

/// Reads what a push would do, from what was fetched.
gitkit::PushPreview readPushPreview(const gitkit::GitRepository& repo, const gitkit::PushQuestion& question);

/// Reads what merging a ref into HEAD would do. `ref` is a full name.
gitkit::MergePreview readMergePreview(const gitkit::GitRepository& repo, const std::string& ref);

} // namespace plovik
