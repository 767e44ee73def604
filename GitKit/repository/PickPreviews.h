// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Merge.h"
#include "GitKit/records/Pick.h"

#include <string>

namespace gitkit {

class GitRepository;

// What picks and the like would do, found out in memory: nothing is left in the repository. Any thread; these block and
// throw as the methods of GitRepository do. The outcome is unknown where this git cannot tell, where contents would have
// to be fetched, and for very many commits.

PickPreview pickPreview(const GitRepository& repo, const Pick& pick);
PickPreview revertPreview(const GitRepository& repo, const Pick& pick);
/// For what is staged now, on which a stash is applied.
PickPreview stashPreview(const GitRepository& repo, const std::string& stash);

} // namespace gitkit
