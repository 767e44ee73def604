// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/CommitSearch.h"

#include "GitKit/repository/Commits.h"

#include "GitKit/runner/GitError.h"

namespace plovik {

FoundCommit findCommit(const gitkit::GitRepository& repo, const CommitSearch& search)
{
    FoundCommit found;
    try {
        found.hash = gitkit::resolveCommit(repo, search.name);
    } catch (const gitkit::GitError&) {
        return found;
    }
    for (std::size_t scope = 0; scope < search.scopes.size(); ++scope) {
        if (const std::optional<int> position = gitkit::position(repo, search.scopes[scope], found.hash)) {
            found.scope = scope;
            found.position = *position;
            break;
        }
    }
    return found;
}

} // namespace plovik
