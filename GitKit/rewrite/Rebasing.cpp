// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/rewrite/Rebasing.h"
#include "GitKit/records/Autosquash.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/rewrite/MovableReading.h"
#include "GitKit/rewrite/Rehearsal.h"
#include "GitKit/rewrite/Rewriting.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace gitkit {

namespace {

/// Walks no further than commits are movable.
constexpr int mostRebased = 300;

std::string rebaseTarget(const GitRepository& repo, const std::string& onto)
{
    const GitOutput found =
        repo.runner().output({"rev-parse", "--verify", "--quiet", exactArgument("rebase", onto) + "^{commit}"});
    if (found.status != 0)
        throw GitError("rebase", 1, inQuotes(onto) + " is not there any more.", ErrorKind::noSuchRef);
    return std::string(withoutLineEnd(found.stdoutBytes));
}

std::set<std::string, std::less<>> listedCommits(const GitRepository& repo, std::vector<std::string> command)
{
    command.insert(command.begin(), "rev-list");
    command.emplace_back("--");
    const std::string listed = repo.runner().bytes(command);
    std::set<std::string, std::less<>> commits;
    Pieces lines(listed, '\n');
    while (const auto line = lines.next())
        commits.emplace(*line);
    return commits;
}

/// Returns the place of the oldest commit that is put elsewhere.
std::size_t firstRebased(const GitRepository& repo, const std::vector<MovableCommit>& commits,
                         const RebaseQuestion& question, const std::string& onto)
{
    if (!question.from.empty()) {
        const auto found = std::ranges::find(commits, question.from, &MovableCommit::hash);
        if (found == commits.end())
            throw GitError("rebase", 1, "The commit is not on the branch any more.", ErrorKind::changedMeanwhile);
        return static_cast<std::size_t>(found - commits.begin());
    }
    const auto own = listedCommits(repo, {"-n", std::to_string(mostRebased + 1), commits.back().hash, '^' + onto});
    std::size_t first = commits.size();
    while (first > 0 && own.contains(commits[first - 1].hash))
        --first;
    if (own.size() != commits.size() - first)
        throw GitError("rebase", 1, "There is a merge among the commits, or there are too many of them.");
    return first;
}

/// Drops the commits that `onto` has in other words.
RewritePlan withoutPresent(const GitRepository& repo, const RewritePlan& plan)
{
    // Comparing takes a moment for each of them; what it would find becomes empty anyway, unless it conflicts.
    constexpr std::size_t mostCompared = 2000;
    if (listedCommits(repo, {"-n", std::to_string(mostCompared + 1), plan.onto, '^' + plan.tip()}).size() >
        mostCompared)
        return plan;
    const auto missing =
        listedCommits(repo, {"--cherry-pick", "--right-only", "--no-merges", plan.onto + "..." + plan.tip()});
    Hashes present;
    for (const std::string& commit : plan.commits) {
        if (!missing.contains(commit))
            present.push_back(commit);
    }
    return dropped(plan, present);
}

/// Finds out what a plan comes to, and drops what it leaves empty.
void rehearse(const GitRepository& repo, RebaseProposal& found)
{
    found.outcome = rehearsed(repo, found.plan);
    Hashes emptied;
    for (std::size_t index = 0; index < found.plan.steps.size(); ++index) {
        if (found.outcome.marks[index].kind == RewriteMark::Kind::emptied)
            emptied.push_back(found.plan.steps[index].commit);
    }
    if (emptied.empty())
        return;
    found.plan = dropped(found.plan, emptied);
    found.outcome = rehearsed(repo, found.plan);
}

} // namespace

RebaseProposal rebaseProposal(const GitRepository& repo, const RebaseQuestion& question)
{
    const std::string onto = rebaseTarget(repo, question.onto);
    const MovableCommits movable = movableCommits(repo, {.branch = question.branch, .limit = mostRebased});
    if (!movable.heldBy.empty())
        throw GitError("rebase", 1,
                       inQuotes(shortBranch(movable.branch)) + " is checked out in " + inQuotes(movable.heldBy) + ".",
                       ErrorKind::checkedOutElsewhere);
    if (movable.commits.empty())
        throw GitError("rebase", 1, "The newest commit is a merge, which cannot be rebased here.");
    const std::size_t first = firstRebased(repo, movable.commits, question, onto);
    RebaseProposal found;
    std::copy(movable.commits.begin() + static_cast<std::ptrdiff_t>(first), movable.commits.end(),
              std::back_inserter(found.commits));
    Hashes hashes;
    std::vector<std::string> messages;
    for (const MovableCommit& commit : found.commits) {
        hashes.push_back(commit.hash);
        messages.push_back(commit.message);
        found.publishedOn = commit.isPublished ? movable.publishedOn : found.publishedOn;
    }
    const std::string base = first == 0 ? movable.base : movable.commits[first - 1].hash;
    if (hashes.empty() || base == onto || std::ranges::find(hashes, onto) != hashes.end())
        throw GitError("rebase", 1, "The commits stand there already.", ErrorKind::nothingToDo);
    found.plan = untouchedPlan(movable.branch, base, hashes);
    found.plan.isElsewhere = movable.isElsewhere;
    found.plan.onto = onto;
    found.fixups = countsOf(autosquashed(found.plan, messages)).squashed;
    if (question.squashesFixups)
        found.plan = autosquashed(found.plan, messages);
    if (question.from.empty())
        found.plan = withoutPresent(repo, found.plan);
    rehearse(repo, found);
    found.branches = movableCommits(repo, placeOf(found.plan)).branches;
    return found;
}

} // namespace gitkit
