// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/InTheWay.h"
#include "GitKit/records/Reset.h"

#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Moving the current branch, or a detached HEAD, to another commit. All functions block and throw as the methods of
// GitRepository do; callers keep the writers of one repository apart. Commits are full hashes.

ResetLoss resetLoss(const GitRepository& repo, const std::string& target);

/// Returns the files that a reset of this kind takes and that only the working tree or the index has.
std::vector<std::string> takenByReset(const GitRepository& repo, ResetKind kind);

/// Returns the files that git does not know and that a reset of this kind would write over.
InTheWay inTheWayOfReset(const GitRepository& repo, ResetKind kind, const std::string& target);

/// Moves the branch from `head` to `target`. Throws before anything is written when the branch is no longer at `head`,
/// while an operation is in progress, when changed files would be lost that the kind keeps, and when files that git does
/// not know are in the way.
void reset(const GitRepository& repo, ResetKind kind, const std::string& head, const std::string& target);

} // namespace gitkit
