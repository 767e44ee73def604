// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/GitRef.h"
#include "GitKit/records/RefTips.h"

#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// The refs of a repository, read without walking its history or opening its objects. Any thread; these block and throw
// as the methods of GitRepository do.

struct RefListing {
    /// What GitRepository::refs() returns, in the same order, but how far branches are ahead and behind is not counted:
    /// both numbers are 0.
    std::vector<GitRef> refs;
    std::string replacements; ///< one line for each ref that replaces an object; for historyCuts() (Divergence.h)
};
RefListing listRefs(const GitRepository& repo);

/// Returns where HEAD and all refs point. A ref that cannot be read is left out.
RefTips readRefTips(const GitRepository& repo);

} // namespace gitkit
