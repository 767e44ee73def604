// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Submodule.h"
#include "GitKit/records/Worktree.h"

#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

struct NeighboursRequest {
    bool operator==(const NeighboursRequest&) const = default;
};

/// What stands beside and inside a working tree.
struct NeighboursRead {
    gitkit::WorktreeList worktrees;
    std::vector<gitkit::Submodule> submodules;
};

/// Reads it, and starts git only for what may be there. For Latest: any thread; blocks; throws gitkit::GitError.
NeighboursRead readNeighbours(const gitkit::GitRepository& repo, const NeighboursRequest& request);

} // namespace plovik
