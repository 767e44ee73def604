// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Movable.h"

namespace gitkit {

class GitRepository;

/// Reads which commits a plan may do something to: from HEAD down to the first merge, and no more than `limit`. Empty
/// before the first commit. Any thread; blocks and throws as the methods of GitRepository do.
MovableCommits movableCommits(const GitRepository& repo, int limit = 300);

} // namespace gitkit
