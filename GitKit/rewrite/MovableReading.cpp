// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/rewrite/MovableReading.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/rewrite/Hooks.h"

#include <algorithm>
#include <set>
#include <string_view>

namespace gitkit {

namespace {

/// Adds the commits from a tip down to the first merge, the newest first.
void addCommits(const GitRepository& repo, const std::string& tip, int limit, MovableCommits& found)
{
    const GitOutput log = repo.runner().output(
        {"log", "-z", "--no-decorate", "--format=%H%x00%P%x00%B", "-n", std::to_string(limit), tip, "--"});
    if (log.status != 0)
        return;
    NulFields fields(log.stdoutBytes);
    while (const auto commit = fields.take<3>()) {
        const auto& [hash, parents, message] = *commit;
        const bool isMerge = parents.find(' ') != std::string_view::npos;
        if (isMerge)
            break;
        found.commits.push_back({std::string(hash), std::string(message)});
        found.base = parents;
        if (parents.empty())
            break;
    }
}

void markPublished(const GitRepository& repo, MovableCommits& found)
{
    // Down to the first merge they come one after another, so as many are enough.
    const std::string listed = repo.runner().bytes({"rev-list", "-n", std::to_string(found.commits.size()),
                                                    found.commits.front().hash, "--not", "--remotes", "--"});
    std::set<std::string_view> own;
    Pieces lines(listed, '\n');
    while (const auto line = lines.next())
        own.insert(*line);
    for (MovableCommit& commit : found.commits)
        commit.isPublished = !own.contains(commit.hash);
}

/// Returns a remote branch that leads to a commit, the one that their branch follows before others.
std::string remoteBranchWith(const GitRepository& repo, const MovableCommits& found, const std::string& commit)
{
    constexpr std::string_view prefix = "refs/remotes/";
    const std::string upstream(withoutLineEnd(
        found.branch.empty() ? std::string()
                             : repo.runner().bytes({"for-each-ref", "--format=%(upstream)", found.branch})));
    const std::string listed =
        repo.runner().bytes({"for-each-ref", "--contains", commit, "--format=%(refname)%1f%(symref)", "refs/remotes"});
    std::string first;
    Pieces lines(listed, '\n');
    while (const auto line = lines.next()) {
        const std::string_view name = line->substr(0, line->find(fieldSeparator));
        if (name == upstream)
            return upstream.substr(std::min(prefix.size(), upstream.size()));
        if (first.empty() && line->ends_with(fieldSeparator))
            first = name.substr(prefix.size());
    }
    return first;
}

std::vector<BranchOnCommit> branchesOn(const GitRepository& repo, const MovableCommits& found)
{
    std::set<std::string_view> hashes;
    for (const MovableCommit& commit : found.commits)
        hashes.insert(commit.hash);
    const std::string listed = repo.runner().bytes(
        {"for-each-ref", "--format=%(objectname)%00%(refname)%00%(symref)%00%(worktreepath)%00", "refs/heads"});
    std::vector<BranchOnCommit> branches;
    NulFields fields(listed);
    while (const auto branch = fields.take<4>()) {
        const auto& [line, name, symref, place] = *branch;
        const std::string_view hash = line.substr(line.starts_with('\n') ? 1 : 0);
        if (hashes.contains(hash) && name != found.branch)
            branches.push_back({std::string(name), std::string(hash), std::string(symref.empty() ? place : symref)});
    }
    return branches;
}

} // namespace

std::string shortBranch(const std::string& name)
{
    constexpr std::string_view prefix = "refs/heads/";
    return name.starts_with(prefix) ? name.substr(prefix.size()) : name;
}

std::string headBranch(const GitRepository& repo)
{
    return std::string(withoutLineEnd(repo.runner().output({"symbolic-ref", "--quiet", "HEAD"}).stdoutBytes));
}

std::string holderOf(const GitRepository& repo, const std::string& branch)
{
    const std::vector<std::string> fields = splitNul(
        withoutLineEnd(repo.runner().bytes({"for-each-ref", "--format=%(worktreepath)%00%(symref)%00", branch})));
    if (fields.size() != 2)
        return {};
    return fields[1].empty() ? fields[0] : fields[1];
}

MovableCommits movableCommits(const GitRepository& repo, const MovablePlace& place)
{
    MovableCommits found;
    found.branch = headBranch(repo);
    found.isElsewhere = !place.branch.empty() && place.branch != found.branch;
    if (found.isElsewhere) {
        found.branch = place.branch;
        found.heldBy = holderOf(repo, place.branch);
    }
    addCommits(repo, found.isElsewhere ? place.branch : "HEAD", place.limit, found);
    if (found.commits.empty())
        return found;
    markPublished(repo, found);
    const auto published = std::ranges::find(found.commits, true, &MovableCommit::isPublished);
    if (published != found.commits.end())
        found.publishedOn = remoteBranchWith(repo, found, published->hash);
    found.branches = branchesOn(repo, found);
    found.hasMessageHook = hasHook(repo, "prepare-commit-msg");
    std::ranges::reverse(found.commits);
    return found;
}

} // namespace gitkit
