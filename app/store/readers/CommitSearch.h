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
    std::string name;                         ///< its hash, or a part of it
    std::vector<gitkit::HistoryScope> scopes; ///< the first that holds it is told
};

struct FoundCommit {
    std::string hash;                 ///< the full one; empty when the repository has no such commit
    std::optional<std::size_t> scope; ///< which of the scopes; nothing when none holds it
    int position = 0;                 ///< how many commits that scope lists before it
};

/// Looks a commit up. Blocks for as long as git walks the scopes; throws as GitRepository::position does.
FoundCommit findCommit(const gitkit::GitRepository& repo, const CommitSearch& search);

} // namespace plovik
