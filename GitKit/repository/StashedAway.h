// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Stash.h"

#include <atomic>
#include <functional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Changes of files that git knows, and an action that they are in the way of. Any thread; these block and throw as the
// methods of GitRepository do.

/// Returns the changed files among those that a command lists, each ended by a zero byte; all changed files when none of
/// these is changed, because git refuses some actions for any staged change. Submodules are left out.
std::vector<std::string> changedInTheWay(const GitRepository& repo, const std::vector<std::string>& listing);

/// Stashes the changes, runs the action, applies the stash again with what was staged, and drops it only if that went
/// without loss. When the action fails and has begun nothing, such as a merge with conflicts, the changes come back as
/// well. `fate` says at every moment what has become of them, also when a stop ends it half-way. Throws what the action
/// throws; conflicts of the stash are told by `fate` alone.
void runBetweenStashes(const GitRepository& repo, const std::string& message,
                       const std::function<void(const GitRepository&)>& action, std::atomic<StashedAway>& fate);

} // namespace gitkit
