// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/rewrite/Rewriting.h"

#include "GitKit/Text.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/InTheWay.h"
#include "GitKit/repository/Operations.h"
#include "GitKit/repository/TellingCommand.h"
#include "GitKit/repository/Upstream.h"
#include "GitKit/rewrite/Absorbing.h"
#include "GitKit/rewrite/Hooks.h"
#include "GitKit/rewrite/MovableReading.h"
#include "GitKit/rewrite/Rehearsal.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/undo/HelperRuns.h"
#include "GitKit/undo/KeepingMove.h"
#include "GitKit/undo/RefTransaction.h"

#include <algorithm>
#include <map>

namespace gitkit {

namespace {

/// Returns where each of the plan's commits has gone; for one that was dropped, where the one beneath it has.
std::map<std::string, std::string> placesAfter(const RewritePlan& plan, const RewriteOutcome& outcome)
{
    const std::map<std::string, std::string> rewritten(outcome.rewritten.begin(), outcome.rewritten.end());
    std::map<std::string, std::string> places;
    std::string beneath = plan.foundation();
    for (const std::string& commit : plan.commits) {
        const auto found = rewritten.find(commit);
        const bool isGone = stepOf(plan, commit)->act == RewriteStep::Act::drop;
        if (!isGone)
            beneath = found == rewritten.end() ? commit : found->second;
        places[commit] = beneath;
    }
    return places;
}

std::vector<RefUpdate> updatesFor(const GitRepository& repo, const RewritePlan& plan, const RewriteOutcome& outcome)
{
    std::vector<RefUpdate> updates{{plan.branch.empty() ? "HEAD" : plan.branch, plan.tip(), outcome.tip}};
    const std::map<std::string, std::string> places = placesAfter(plan, outcome);
    for (const BranchOnCommit& branch : movableCommits(repo, placeOf(plan)).branches) {
        const auto place = places.find(branch.commit);
        // One that stood on nothing but dropped root commits has no place to go.
        const bool moves = branch.heldBy.empty() && place != places.end() && !place->second.empty();
        if (moves && place->second != branch.commit)
            updates.push_back({branch.name, branch.commit, place->second});
    }
    return updates;
}

void requireMovable(const GitRepository& repo, const RewritePlan& plan)
{
    if (const std::string holder = holderOf(repo, plan.branch); !holder.empty())
        throw GitError("rebase", 1, inQuotes(shortBranch(plan.branch)) + " is checked out in " + inQuotes(holder) + ".",
                       ErrorKind::checkedOutElsewhere);
    if (withoutLineEnd(repo.runner().output({"rev-parse", "--verify", "--quiet", plan.branch}).stdoutBytes) !=
        plan.tip())
        throw GitError("rebase", 1, "The branch has moved. Nothing was done.", ErrorKind::changedMeanwhile);
}

} // namespace

MovablePlace placeOf(const RewritePlan& plan)
{
    return {.branch = plan.isElsewhere ? plan.branch : std::string(), .limit = static_cast<int>(plan.commits.size())};
}

void requireAsPlanned(const GitRepository& repo, const RewritePlan& plan)
{
    if (operationInProgress(repo, gitDirectories(repo).own))
        throw GitError("rebase", 1, "An operation is in progress. Continue or abort it first.",
                       ErrorKind::operationUnfinished);
    if (plan.isElsewhere)
        return requireMovable(repo, plan);
    if (headCommit(repo) != plan.tip() || headBranch(repo) != plan.branch)
        throw GitError("rebase", 1, "Something else is checked out by now, or the branch has moved. Nothing was done.",
                       ErrorKind::changedMeanwhile);
    if (!repo.runner().bytes({"ls-files", "--unmerged", "-z"}, helperOptions()).empty())
        throw GitError("rebase", 1, "Resolve and stage the conflicted files first.", ErrorKind::conflicts);
}

RewriteOutcome prepareRewrite(const GitRepository& repo, const RewritePlan& plan)
{
    requireAsPlanned(repo, plan);
    if (dropsAll(plan) && plan.base.empty())
        throw GitError("rebase", 1, "No commit would be left of the branch.", ErrorKind::nothingToDo);
    askPreRebase(repo, plan.base.empty() ? "--root" : plan.foundation(),
                 plan.isElsewhere ? shortBranch(plan.branch) : std::string());
    return written(repo, plan);
}

void applyRewrite(const GitRepository& repo, const RewritePlan& plan, const RewriteOutcome& outcome,
                  const std::string& reason)
{
    const std::filesystem::path gitDirectory = gitDirectories(repo).own;
    if (!plan.isElsewhere)
        waitForIndex(repo);
    requireAsPlanned(repo, plan);
    if (outcome.result != RewriteOutcome::Result::clean)
        throw GitError("rebase", 1, "The commits conflict.", ErrorKind::conflicts);
    if (outcome.tip == plan.tip())
        return;
    if (plan.isElsewhere) {
        RefTransaction(repo, reason, updatesFor(repo, plan, outcome)).commit();
        return tellRewritten(repo, outcome.rewritten);
    }
    const TreeMove move{.from = std::string(withoutLineEnd(
                            repo.runner().bytes({"rev-parse", "--verify", plan.tip() + "^{tree}"}, helperOptions()))),
                        .to = outcome.tree};
    if (move.from != move.to) {
        const InTheWay unknown = inTheWay(repo, move.from, move.to);
        for (const auto* files : {&unknown.untracked, &unknown.ignored}) {
            if (!files->empty())
                throw GitError("rebase", 1, inQuotes(files->front()) + " would be overwritten. Move it away first.",
                               ErrorKind::wouldOverwriteUnknownFiles);
        }
        requireUnedited(repo, gitDirectory, move, "rebase");
    }
    RefTransaction refs(repo, reason, updatesFor(repo, plan, outcome));
    if (move.from != move.to)
        moveKeeping(repo, gitDirectory, move);
    refs.commit();
    tellRewritten(repo, outcome.rewritten);
}

void applyStagedInto(const GitRepository& repo, const RewritePlan& plan, const RewriteOutcome& outcome,
                     const std::string& reason)
{
    waitForIndex(repo);
    requireAsPlanned(repo, plan);
    RefTransaction(repo, reason, updatesFor(repo, plan, outcome)).commit();
    tellRewritten(repo, outcome.rewritten);
}

} // namespace gitkit
