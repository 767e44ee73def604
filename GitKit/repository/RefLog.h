// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/RefMove.h"

#include <cstddef>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

/// Returns the name of the branch that was left, for "checkout: moving from main to side"; empty for other actions and
/// where a hash was left.
std::string branchLeft(const std::string& action);

/// Returns where a ref was, the newest `most` of what its log tells, the newest first. `ref` is HEAD or a full name.
/// Commits that git has forgotten end the list. Any thread; blocks; throws as the methods of GitRepository do.
std::vector<RefMove> refMoves(const GitRepository& repo, const std::string& ref, std::size_t most);

} // namespace gitkit
