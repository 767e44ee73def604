// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/RefReaders.h"

#include "GitKit/repository/RecentBranches.h"

namespace plovik {

std::vector<std::string> readRecentBranches(const gitkit::GitRepository& repo, const std::int64_t& /*question*/)
{
    return gitkit::recentlyCheckedOut(repo);
}

} // namespace plovik
