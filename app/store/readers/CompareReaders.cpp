// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/CompareReaders.h"

#include "GitKit/parsers/DisplayOrder.h"
#include "GitKit/repository/Commits.h"
#include "GitKit/repository/Comparing.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/TreeChanges.h"

namespace plovik {

namespace {

using gitkit::Comparison;

std::string commitOf(const gitkit::GitRepository& repo, const gitkit::ComparedState& state)
{
    return state.isWorkingTree() ? gitkit::resolveCommit(repo, "HEAD") : state.hash;
}

void startWhereTheyParted(const gitkit::GitRepository& repo, const Comparison& comparison, ComparedFiles& compared)
{
    const std::vector<std::string> bases =
        gitkit::mergeBases(repo, commitOf(repo, comparison.from), commitOf(repo, comparison.to));
    compared.baseCount = bases.size();
    if (!bases.empty())
        compared.trees.from = bases.front();
}

} // namespace

ComparedFiles readComparedFiles(const gitkit::GitRepository& repo, const ComparisonRequest& request)
{
    const Comparison& comparison = request.comparison;
    ComparedFiles compared;
    if (comparison.kind == Comparison::Kind::merge) {
        compared.files = gitkit::mergedFiles(repo, comparison.to.hash);
    } else {
        compared.trees = {comparison.from.hash, comparison.to.hash};
        if (comparison.kind == Comparison::Kind::files)
            compared.trees.from = gitkit::emptyTreeHash(repo);
        else if (comparison.sinceParted)
            startWhereTheyParted(repo, comparison, compared);
        compared.files = gitkit::changedFiles(repo, compared.trees, gitkit::Renames::paired);
    }
    gitkit::sortForDisplay(compared.files);
    return compared;
}

std::vector<gitkit::ChangeCounts> readComparedCounts(const gitkit::GitRepository& repo,
                                                     const ComparedTreesRequest& request)
{
    std::vector<gitkit::ChangeCounts> counts = gitkit::changeCounts(repo, request.trees, gitkit::Renames::paired);
    gitkit::sortForDisplay(counts);
    return counts;
}

gitkit::ParsedDiff readComparedDiff(const gitkit::GitRepository& repo, const ComparedDiffRequest& request)
{
    if (!request.merge.empty())
        return gitkit::mergeDiff(repo, request.merge, request.file, request.reading);
    return repo.treeDiff(request.trees, request.file, request.reading);
}

std::vector<gitkit::CommitApart> readCommitsApart(const gitkit::GitRepository& repo, const ComparisonRequest& request)
{
    return gitkit::commitsApart(repo, commitOf(repo, request.comparison.from), commitOf(repo, request.comparison.to),
                                mostCommitsApart + 1);
}

} // namespace plovik
