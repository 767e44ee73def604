// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/HistoryScope.h"

#include <optional>
#include <string>
#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

/// Where to look for a commit.
struct CommitSearch {
    std::string name;                         ///< the commit's hash, or a part of it
    std::vector<gitkit::HistoryScope> scopes; ///< in the order of search
};

struct FoundCommit {
    std::string hash;                 ///< the full one; empty when the repository has no such commit
    std::optional<std::size_t> scope; ///< index of the first scope that contains it; nullopt when none does
    int position = 0;                 ///< the number of commits before it in that scope
};

/// Looks a commit up. Blocks for as long as git walks the scopes; throws as GitRepository::position does.
FoundCommit findCommit(const gitkit::GitRepository& repo, const CommitSearch& search);

} // namespace plovik
