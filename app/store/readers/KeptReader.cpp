// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/KeptReader.h"

#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Keeping.h"

#include <algorithm>

namespace plovik {

std::vector<gitkit::Kept> readKept(const gitkit::GitRepository& repo, const KeptRequest& /*all*/)
{
    std::vector<gitkit::Kept> all = gitkit::allKept(gitkit::gitDirectories(repo).own);
    std::ranges::reverse(all);
    return all;
}

} // namespace plovik
