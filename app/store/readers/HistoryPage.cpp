// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/HistoryPage.h"

#include "GitKit/repository/GitRepository.h"

#include "GitKit/CommitGraph.h"

#include <utility>

namespace plovik {

HistoryPage readHistoryPage(const gitkit::GitRepository& repo, const HistoryRequest& request)
{
    // One more commit than is shown is read, to see whether older ones exist.
    std::vector<gitkit::Commit> commits = repo.log(request.scope, request.limit + 1, request.filter);
    HistoryPage page;
    page.hasMore = commits.size() > static_cast<std::size_t>(request.limit);
    if (page.hasMore)
        commits.resize(static_cast<std::size_t>(request.limit));

    gitkit::CommitGraph graph = gitkit::CommitGraph::layout(commits);
    page.laneCount = graph.laneCount;
    page.rows.reserve(commits.size());
    for (std::size_t i = 0; i < commits.size(); ++i)
        page.rows.push_back({std::move(commits[i]), std::move(graph.rows[i])});
    return page;
}

} // namespace plovik
