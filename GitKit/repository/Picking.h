// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/InTheWay.h"
#include "GitKit/records/Pick.h"

#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Making the changes of commits again, and taking them back. Any thread; these block and throw as the methods of
// GitRepository do; callers keep the writers of one repository apart.

/// Picks all of them, the oldest first, and stops at the first that conflicts or would change nothing.
void cherryPick(const GitRepository& repo, const Pick& pick);
/// The same, the newest first.
void revert(const GitRepository& repo, const Pick& pick);

/// Returns what git does not know and that a pick would write over, or a revert.
InTheWay inTheWayOfPick(const GitRepository& repo, const Pick& pick);
InTheWay inTheWayOfRevert(const GitRepository& repo, const Pick& pick);

/// Returns names for the parents of a commit: the branch that leads to each without passing another branch's merge, or else
/// its abbreviated hash.
std::vector<std::string> parentNames(const GitRepository& repo, const std::string& hash);

} // namespace gitkit
