// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/Reset.h"

#include "GitKit/Text.h"
#include "GitKit/repository/Commits.h"
#include "GitKit/repository/Divergence.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/InTheWay.h"
#include "GitKit/repository/Operations.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/repository/TellingCommand.h"
#include "GitKit/repository/Upstream.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/undo/HelperRuns.h"
#include "GitKit/undo/KeepingMove.h"
#include "GitKit/undo/RefTransaction.h"
#include "GitKit/undo/TreeMove.h"
#include "GitKit/undo/UndoPoints.h"

#include <algorithm>
#include <charconv>

namespace gitkit {

namespace {

using Names = std::vector<std::string>;

std::string treeOfCommit(const GitRepository& repo, const std::string& commit)
{
    return std::string(withoutLineEnd(
        repo.runner().bytes({"rev-parse", "--verify", exactArgument("reset", commit) + "^{tree}"}, helperOptions())));
}

/// Returns the full name of the branch that is checked out, and "HEAD" where none is.
std::string movedRef(const GitRepository& repo)
{
    const GitOutput branch = repo.runner().output({"symbolic-ref", "--quiet", "HEAD"}, helperOptions());
    return branch.status == 0 ? std::string(withoutLineEnd(branch.stdoutBytes)) : std::string("HEAD");
}

/// Counts the commits from HEAD down that neither the target nor another branch, remote branch or tag leads to.
int commitsOnlyHere(const GitRepository& repo, const std::string& target)
{
    constexpr std::string_view prefix = "refs/heads/";
    Names command{"rev-list", "--count", "HEAD", "--not", target};
    // The pattern is matched below refs/heads, so it must be the short name.
    if (const std::string ref = movedRef(repo); ref.starts_with(prefix))
        command.push_back("--exclude=" + ref.substr(prefix.size()));
    command.insert(command.end(), {"--branches", "--tags", "--remotes", "--"});
    const std::string counted = repo.runner().bytes(command);
    int count = 0;
    std::from_chars(counted.data(), counted.data() + counted.size(), count);
    return count;
}

bool hasConflicts(const GitRepository& repo)
{
    return !repo.runner().bytes({"ls-files", "--unmerged", "-z"}, helperOptions()).empty();
}

/// Returns the files that git was told to take for unchanged.
Names assumedUnchanged(const GitRepository& repo)
{
    Names paths;
    // An entry is "FLAG PATH", with a small letter for such a file.
    for (const std::string& entry : splitNul(repo.runner().bytes({"ls-files", "-v", "-z"}, helperOptions()))) {
        if (entry.size() > 2 && entry.front() >= 'a' && entry.front() <= 'z')
            paths.push_back(entry.substr(2));
    }
    return paths;
}

void requireNothingInTheWay(const GitRepository& repo, ResetKind kind, const std::string& target)
{
    const InTheWay found = inTheWayOfReset(repo, kind, target);
    const Names& files = found.untracked.empty() ? found.ignored : found.untracked;
    if (!files.empty())
        throw GitError("reset", 1, inQuotes(files.front()) + " would be overwritten. Move it away first.",
                       ErrorKind::wouldOverwriteUnknownFiles);
}

void moveIndexTo(const GitRepository& repo, const std::filesystem::path& gitDirectory, const std::string& tree)
{
    moveIndex(repo, gitDirectory, {.from = indexContents(repo, gitDirectory).tree, .to = tree});
}

void throwChangesAway(const GitRepository& repo, const std::string& target)
{
    repo.runner().accepted({"read-tree", "--reset", "-u", "--no-recurse-submodules", target});
    // Its exit status tells only that files are changed, as those are that git was told to leave alone.
    repo.runner().output({"update-index", "-q", "--refresh"}, helperOptions());
}

} // namespace

ResetLoss resetLoss(const GitRepository& repo, const std::string& target)
{
    ResetLoss loss;
    loss.head = headCommit(repo);
    if (loss.head.empty())
        throw GitError("reset", 1, "Nothing has been committed yet.", ErrorKind::noSuchRef);
    const Divergence counts = countDivergence(repo, {loss.head, exactArgument("reset", target)});
    loss.left = counts.ahead;
    loss.gained = counts.behind;
    loss.onlyHere = loss.left == 0 ? 0 : commitsOnlyHere(repo, target);
    const Names moved = splitNul(repo.runner().bytes(
        {"diff-tree", "-r", "-z", "--no-renames", "--name-only", loss.head, target, "--"}, helperOptions()));
    const auto isMoved = [&moved](const std::string& path) { return std::ranges::find(moved, path) != moved.end(); };
    for (const FileChange& file : repo.status().files) {
        if (file.isUntracked() || file.isSubmodule)
            continue;
        loss.hasConflicts |= file.isConflicted;
        loss.changed.push_back(file.path);
        const Names paths = file.allPaths();
        if (std::ranges::any_of(paths, isMoved))
            loss.refused.push_back(file.path);
    }
    const InTheWay unknown = inTheWay(repo, loss.head, target);
    loss.inTheWay = unknown.untracked;
    loss.inTheWay.insert(loss.inTheWay.end(), unknown.ignored.begin(), unknown.ignored.end());
    return loss;
}

Names takenByReset(const GitRepository& repo, ResetKind kind)
{
    if (kind != ResetKind::hard)
        return {};
    Names paths = changedFiles(repo);
    for (std::string& path : assumedUnchanged(repo))
        paths.push_back(std::move(path));
    for (const FileChange& file : repo.status().files) {
        if (!file.isUntracked() && !file.isSubmodule)
            std::ranges::move(file.allPaths(), std::back_inserter(paths));
    }
    std::ranges::sort(paths);
    paths.erase(std::ranges::unique(paths).begin(), paths.end());
    return paths;
}

InTheWay inTheWayOfReset(const GitRepository& repo, ResetKind kind, const std::string& target)
{
    if (kind == ResetKind::soft || kind == ResetKind::mixed)
        return {};
    // A file that was taken out of the index is one that git does not know.
    const std::string now = indexContents(repo, gitDirectories(repo).own).tree;
    return inTheWay(repo, now, treeOfCommit(repo, target));
}

void reset(const GitRepository& repo, ResetKind kind, const std::string& head, const std::string& target)
{
    const std::filesystem::path gitDirectory = gitDirectories(repo).own;
    waitForIndex(repo);
    if (operationInProgress(repo, gitDirectory))
        throw GitError("reset", 1, "An operation is in progress. Continue or abort it first.",
                       ErrorKind::operationUnfinished);
    if (headCommit(repo) != head)
        throw GitError("reset", 1, "Something else is checked out by now, or the branch has moved. Nothing was done.",
                       ErrorKind::changedMeanwhile);
    if (kind != ResetKind::hard && hasConflicts(repo))
        throw GitError("reset", 1, "Resolve and stage the conflicted files first.", ErrorKind::conflicts);
    const TreeMove move{.from = treeOfCommit(repo, head), .to = treeOfCommit(repo, target)};
    requireNothingInTheWay(repo, kind, target);
    if (kind == ResetKind::keep)
        requireUnedited(repo, gitDirectory, move, "reset");
    RefTransaction refs(repo, "reset: moving to " + target, {{movedRef(repo), head, target}});
    if (kind == ResetKind::keep)
        moveKeeping(repo, gitDirectory, move);
    if (kind == ResetKind::mixed)
        moveIndexTo(repo, gitDirectory, move.to);
    if (kind == ResetKind::hard)
        throwChangesAway(repo, target);
    refs.commit();
}

} // namespace gitkit
