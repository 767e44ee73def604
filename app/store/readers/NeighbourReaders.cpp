// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/NeighbourReaders.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Submodules.h"
#include "GitKit/repository/Worktrees.h"

namespace plovik {

NeighboursRead readNeighbours(const gitkit::GitRepository& repo, const NeighboursRequest& /*request*/)
{
    return {.worktrees = gitkit::worktrees(repo), .submodules = gitkit::submodules(repo)};
}

} // namespace plovik
