// SPDX-License-Identifier: GPL-3.0-or-later
// A pick is a merge whose base is the picked commit's parent; to revert a commit is to merge its parent, with the commit
// itself as the base. Commits are made for both so that git finds these bases.

#include "GitKit/repository/PickPreviews.h"

#include "GitKit/Text.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/MemoryMerge.h"
#include "GitKit/repository/Merging.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/repository/ScratchIndex.h"

#include <algorithm>

namespace gitkit {

namespace {

using Outcome = MergePreview::Outcome;

constexpr std::size_t mostPicked = 40;

std::string parentName(const std::string& commit, const Pick& pick)
{
    return commit + '^' + std::to_string(std::max(pick.parent, 1));
}

bool hasCommit(const GitRepository& repo, const std::string& revision)
{
    return repo.runner().output({"rev-parse", "--verify", "--quiet", revision + "^{commit}"}).status == 0;
}

std::string subjectOf(const GitRepository& repo, const std::string& commit)
{
    return std::string(withoutLineEnd(
        repo.runner().output({"log", "-1", "--no-show-signature", "--format=%s", commit, "--"}).stdoutBytes));
}

bool remembers(const GitRepository& repo)
{
    return withoutLineEnd(repo.runner().output({"config", "--type=bool", "--get", "rerere.enabled"}).stdoutBytes) ==
           "true";
}

enum class Direction { again, back };

/// Puts one commit's changes on top of `tree`.
Rehearsed rehearseOne(const GitRepository& repo, const ThrowawayObjects& objects, const std::string& tree,
                      const std::string& commit, const std::string& parent, Direction way)
{
    if (way == Direction::again)
        return rehearse(repo, objects, rehearsedCommit(repo, objects, parent, tree), commit);
    return rehearse(repo, objects, rehearsedCommit(repo, objects, commit, tree),
                    rehearsedCommit(repo, objects, commit, parent + "^{tree}"));
}

PickPreview preview(const GitRepository& repo, const Pick& pick, Direction way)
{
    PickPreview found;
    if (pick.commits.size() > mostPicked || !mergesInMemory(repo))
        return found;
    std::vector<std::string> commits = pick.commits;
    if (way == Direction::back)
        std::ranges::reverse(commits);
    const ThrowawayObjects objects(repo);
    std::string tree = "HEAD^{tree}";
    for (const std::string& commit : commits) {
        const std::string parent = parentName(exactArgument("merge-tree", commit), pick);
        if (!hasCommit(repo, parent)) // the first commit of a history has none
            return {};
        Rehearsed one = rehearseOne(repo, objects, tree, commit, parent, way);
        if (one.outcome != Outcome::clean) {
            found.outcome = one.outcome;
            found.conflicts = std::move(one.conflicts);
            found.remembersResolutions = remembers(repo);
            if (commits.size() > 1)
                found.stopsAt = subjectOf(repo, commit);
            return found;
        }
        tree = std::move(one.tree);
    }
    found.outcome = Outcome::clean;
    found.files = changedBetween(repo, objects, "HEAD", tree);
    return found;
}

} // namespace

PickPreview pickPreview(const GitRepository& repo, const Pick& pick) { return preview(repo, pick, Direction::again); }

PickPreview revertPreview(const GitRepository& repo, const Pick& pick) { return preview(repo, pick, Direction::back); }

PickPreview stashPreview(const GitRepository& repo, const std::string& stash)
{
    const std::string base = exactArgument("merge-tree", stash) + "^1";
    if (!mergesInMemory(repo) || !hasCommit(repo, base))
        return {};
    const ThrowawayObjects objects(repo);
    const ScratchIndex index(repo.runner(), gitDirectories(repo).own / "index");
    const GitOutput written = repo.runner().output({"write-tree"}, index.options(objects.options()));
    if (written.status != 0) // in conflict
        return {};
    const std::string tree(withoutLineEnd(written.stdoutBytes));
    Rehearsed merged = rehearse(repo, objects, rehearsedCommit(repo, objects, base, tree), stash);
    PickPreview found{.outcome = merged.outcome, .conflicts = std::move(merged.conflicts)};
    found.remembersResolutions = found.outcome == Outcome::conflicts && remembers(repo);
    if (found.outcome == Outcome::clean)
        found.files = changedBetween(repo, objects, tree, merged.tree);
    return found;
}

} // namespace gitkit
