// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Merging.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/Divergence.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Identity.h"
#include "GitKit/repository/MemoryMerge.h"
#include "GitKit/repository/Overwriting.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/repository/TellingCommand.h"
#include "GitKit/repository/Upstream.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitVersion.h"
#include "GitKit/undo/RefTransaction.h"

#include <utility>

namespace gitkit {

namespace {

std::string mergeSetting(const GitRepository& repo, const std::string& name)
{
    return std::string(withoutLineEnd(repo.runner().output({"config", "--get", name}).stdoutBytes));
}

/// Whether reading contents may go to the network, which a preview never does.
bool isPartialClone(const GitRepository& repo)
{
    return repo.runner().output({"config", "--get-regexp", "^remote\\..*\\.(promisor|partialclonefilter)$"}).status ==
           0;
}

/// Returns the commits that a rebase onto `theirs` replays, the oldest first, and the first parent of each.
std::vector<CommitPair> replayed(const GitRepository& repo, const std::string& theirs)
{
    std::vector<CommitPair> commits;
    const std::string listed =
        repo.runner().bytes({"rev-list", "--reverse", "--topo-order", "--no-merges", "--right-only", "--cherry-pick",
                             "--parents", theirs + "...HEAD", "--"});
    Pieces lines(listed, '\n');
    while (const auto line = lines.next()) {
        const std::size_t end = line->find(' ');
        commits.push_back({std::string(line->substr(0, end)),
                           std::string(end == std::string_view::npos ? std::string_view() : line->substr(end + 1))});
    }
    return commits;
}

/// Picks one commit after the other in memory, until one conflicts.
void rehearseRebase(const GitRepository& repo, const std::string& theirs, const std::vector<CommitPair>& commits,
                    RebasePreview& preview)
{
    const ThrowawayObjects objects(repo);
    std::string tree = theirs + "^{tree}";
    for (const auto& [commit, parent] : commits) {
        if (parent.empty()) // a root, whose pick has nothing to start from
            return;
        // The base of both is the parent of the picked one.
        const std::string ours = rehearsedCommit(repo, objects, parent, tree);
        const Rehearsed picked = rehearse(repo, objects, ours, commit);
        if (picked.outcome != MergePreview::Outcome::clean) {
            preview.outcome = picked.outcome;
            preview.conflicts = picked.conflicts;
            return;
        }
        tree = picked.tree;
    }
    preview.outcome = MergePreview::Outcome::clean;
}

/// A branch and what it is moved to.
struct Movable {
    std::string ours;   ///< full hash
    std::string theirs; ///< full hash
    std::string to;
    std::string place;  ///< working tree that has the branch checked out; empty when none has
    std::string symref; ///< what the branch is another name of; empty when of none
};

/// Reads a branch and what it is moved to: a full name or hash, or else the branch that it follows.
Movable movable(const GitRepository& repo, const std::string& branch, const std::string& other)
{
    const std::vector<std::string> fields = splitNul(withoutLineEnd(
        repo.runner().bytes({"for-each-ref", "--format=%(objectname)%00%(upstream)%00%(worktreepath)%00%(symref)%00",
                             "refs/heads/" + branch})));
    if (fields.size() != 4)
        throw GitError("merge", 1, "There is no branch " + inQuotes(branch) + ".", ErrorKind::noSuchRef);
    Movable found{.ours = fields[0],
                  .theirs = {},
                  .to = other.empty() ? fields[1] : other,
                  .place = fields[2],
                  .symref = fields[3]};
    if (!found.to.empty())
        found.theirs = std::string(
            withoutLineEnd(repo.runner().output({"rev-parse", "--verify", "--quiet", found.to}).stdoutBytes));
    if (found.theirs.empty())
        throw GitError("merge", 1, inQuotes(branch) + " follows no branch that is here.", ErrorKind::noUpstream);
    return found;
}

/// Throws where a branch cannot be moved without what has it checked out.
void requireFree(const std::string& branch, const Movable& now)
{
    if (!now.place.empty())
        throw GitError("merge", 1, inQuotes(branch) + " is checked out in " + inQuotes(now.place) + ".",
                       ErrorKind::checkedOutElsewhere);
    if (!now.symref.empty())
        throw GitError("merge", 1, inQuotes(branch) + " is another name of " + inQuotes(now.symref) + ".");
}

} // namespace

bool mergesInMemory(const GitRepository& repo) { return can(Ability::mergesInMemory) && !isPartialClone(repo); }

MergePreview mergePreview(const GitRepository& repo, const std::string& ref)
{
    const std::string theirs = std::string(
        withoutLineEnd(repo.runner().bytes({"rev-parse", "--verify", exactArgument("merge", ref) + "^{commit}"})));
    const Divergence counts = countDivergence(repo, {headCommit(repo), theirs});
    const std::string forward = mergeSetting(repo, "merge.ff");
    MergePreview preview;
    preview.commits = counts.behind;
    preview.own = counts.ahead;
    preview.alwaysMergeCommit = forward == "false" || forward == "no" || forward == "off";
    preview.alwaysFastForward = forward == "only";
    preview.remembersResolutions = mergeSetting(repo, "rerere.enabled") == "true";
    if (preview.commits == 0 || preview.own == 0) {
        preview.outcome = MergePreview::Outcome::clean;
    } else if (mergesInMemory(repo)) {
        const ThrowawayObjects objects(repo);
        Rehearsed found = rehearse(repo, objects, "HEAD", theirs);
        preview.outcome = found.outcome;
        if (found.outcome == MergePreview::Outcome::clean)
            preview.files = changedBetween(repo, objects, "HEAD", found.tree);
        preview.conflicts = std::move(found.conflicts);
    }
    return preview;
}

RebasePreview rebasePreview(const GitRepository& repo, const std::string& ref)
{
    constexpr int mostRehearsed = 40;
    constexpr int mostCompared = 2000; // with the replayed ones, to find those that are there already
    const std::string theirs = std::string(
        withoutLineEnd(repo.runner().bytes({"rev-parse", "--verify", exactArgument("rebase", ref) + "^{commit}"})));
    RebasePreview preview;
    const Divergence counts = countDivergence(repo, {headCommit(repo), theirs});
    preview.beneath = counts.behind;
    if (counts.ahead == 0 || counts.behind == 0) {
        preview.commits = counts.behind == 0 ? 0 : counts.ahead;
        preview.outcome = MergePreview::Outcome::clean;
        return preview;
    }
    preview.commits = counts.ahead;
    if (counts.ahead > mostRehearsed || counts.behind > mostCompared)
        return preview;
    const std::vector<CommitPair> commits = replayed(repo, theirs);
    preview.commits = static_cast<int>(commits.size());
    preview.remembersResolutions = mergeSetting(repo, "rerere.enabled") == "true";
    if (mergesInMemory(repo))
        rehearseRebase(repo, theirs, commits, preview);
    return preview;
}

void mergeBy(const GitRepository& repo, const std::string& ref, MergeKind kind)
{
    if (kind == MergeKind::normal) {
        repo.merge(ref);
        return;
    }
    const std::string revision = exactArgument("merge", ref);
    waitForIndex(repo);
    requireIgnoredStay(
        repo, "merge",
        {"diff", "--name-only", "-z", "--no-renames", "--no-ext-diff", "--diff-filter=A", "HEAD..." + revision, "--"});
    std::vector<std::string> command{"merge"};
    if (kind == MergeKind::mergeCommit)
        command.insert(command.end(), {"--no-ff", "--no-squash"});
    if (kind == MergeKind::fastForwardOnly)
        command.insert(command.end(), {"--ff-only", "--no-squash"});
    if (kind == MergeKind::squash)
        command.insert(command.end(), {"--squash", "--ff"}); // which merge.ff=false would clash with
    command.push_back(revision.starts_with("refs/") ? shortestName(repo.runner(), revision) : revision);
    runTelling(repo.runner(), command);
}

void rebaseOnto(const GitRepository& repo, const std::string& ref)
{
    const std::string revision = exactArgument("rebase", ref);
    requireReplayer(repo, ref);
    waitForIndex(repo);
    runTelling(repo.runner(),
               {"rebase", revision.starts_with("refs/") ? shortestName(repo.runner(), revision) : revision});
}

void fetchUpstreamOf(const GitRepository& repo, const std::string& branch)
{
    const std::string remote(withoutLineEnd(
        repo.runner().bytes({"for-each-ref", "--format=%(upstream:remotename)", "refs/heads/" + branch})));
    if (remote.empty())
        throw GitError("fetch", 1, inQuotes(branch) + " follows no branch of a remote.", ErrorKind::noUpstream);
    runTelling(repo.runner(), {"fetch", "--progress", "--no-write-fetch-head", newNameArgument("fetch", remote)});
}

void fastForward(const GitRepository& repo, const std::string& branch, const std::string& to)
{
    const Movable now = movable(repo, branch, to);
    requireFree(branch, now);
    if (now.ours == now.theirs || countDivergence(repo, {now.ours, now.theirs}).behind == 0)
        return;
    if (repo.runner().output({"merge-base", "--is-ancestor", now.ours, now.theirs}).status != 0)
        throw GitError("merge", 1,
                       inQuotes(branch) + " and " + inQuotes(now.to.substr(now.to.find('/', 5) + 1)) +
                           " have diverged. Check it out to merge.",
                       ErrorKind::notFastForward);
    RefTransaction move(repo, "merge " + now.to + ": Fast-forward", {{"refs/heads/" + branch, now.ours, now.theirs}});
    move.commit();
}

void moveBranch(const GitRepository& repo, const std::string& branch, const std::string& from, const std::string& to)
{
    const Movable now = movable(repo, branch, exactArgument("branch", to));
    requireFree(branch, now);
    if (now.ours != from)
        throw GitError("branch", 1, inQuotes(branch) + " has moved meanwhile. It stays where it is.",
                       ErrorKind::changedMeanwhile);
    RefTransaction move(repo, "branch: Reset to " + to, {{"refs/heads/" + branch, from, to}});
    move.commit();
}

} // namespace gitkit
