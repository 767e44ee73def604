// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/RefLogReaders.h"

#include "GitKit/repository/RefLog.h"
#include "GitKit/repository/Relations.h"

#include <set>
#include <utility>

namespace plovik {

std::vector<RefLogRow> readRefLog(const gitkit::GitRepository& repo, const RefLogRequest& request)
{
    if (request.head.empty())
        return {};
    std::vector<RefLogRow> rows;
    for (gitkit::RefMove& move : gitkit::refMoves(repo, request.ref, mostRefMoves))
        rows.push_back({.move = std::move(move)});
    // The row below tells where the branch was when it was left.
    std::set<std::string> seen;
    for (std::size_t row = 0; row + 1 < rows.size(); ++row) {
        std::string left = gitkit::branchLeft(rows[row].move.action);
        if (left.empty() || !seen.insert(left).second)
            continue;
        rows[row].left = std::move(left);
        rows[row].leftAt = rows[row + 1].move.commit.hash;
    }
    return rows;
}

CommitRelations readCommitRelations(const gitkit::GitRepository& repo, const std::string& hash)
{
    return {gitkit::children(repo, hash), gitkit::refsContaining(repo, hash), gitkit::nearestTagBefore(repo, hash),
            gitkit::oldestTagContaining(repo, hash)};
}

} // namespace plovik
