// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/HistoryPage.h"

#include "GitKit/CommitGraph.h"
#include "GitKit/repository/Commits.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace plovik {

namespace {

constexpr std::size_t shortestHash = 4; ///< the least that git takes for a part of a hash

bool looksLikeHash(const std::string& text)
{
    return text.size() >= shortestHash && text.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
}

/// Returns the commit of the scope whose hash begins with the text, if there is exactly one.
std::optional<gitkit::Commit> commitOfHash(const gitkit::GitRepository& repo, const gitkit::HistoryScope& scope,
                                           const std::string& text)
{
    try {
        const std::string hash = gitkit::resolveCommit(repo, text);
        const bool isPart = std::ranges::equal(text, hash.substr(0, text.size()), {},
                                               [](unsigned char digit) { return std::tolower(digit); });
        if (!isPart || !gitkit::position(repo, scope, hash))
            return std::nullopt;
        std::vector<gitkit::Commit> found = repo.log(gitkit::HistoryScope::of(hash), 1, {});
        return found.empty() ? std::nullopt : std::optional(std::move(found.front()));
    } catch (const gitkit::GitError&) {
        return std::nullopt; // a word of messages
    }
}

/// Puts the commit first that a search names by its hash, which no message contains.
void addNamedCommit(std::vector<gitkit::Commit>& commits, const gitkit::GitRepository& repo,
                    const HistoryRequest& request)
{
    const auto& filter = request.filter;
    if (!filter || filter->field != gitkit::HistoryFilter::Field::message || !looksLikeHash(filter->text))
        return;
    std::optional<gitkit::Commit> named = commitOfHash(repo, request.scope, filter->text);
    if (!named)
        return;
    std::erase_if(commits, [&](const gitkit::Commit& commit) { return commit.hash == named->hash; });
    commits.insert(commits.begin(), std::move(*named));
}

} // namespace

HistoryPage readHistoryPage(const gitkit::GitRepository& repo, const HistoryRequest& request)
{
    // One more commit than is shown is read, to see whether older ones exist.
    std::vector<gitkit::Commit> commits = repo.log(request.scope, request.limit + 1, request.filter);
    addNamedCommit(commits, repo, request);
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
