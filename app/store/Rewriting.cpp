// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Rewriting.h"

#include "GitKit/records/Autosquash.h"
#include "app/store/Changes.h"
#include "app/store/History.h"
#include "app/store/RewriteChanges.h"
#include "app/store/RewritingWords.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/WindowState.h"
#include "app/store/readers/RewriteReaders.h"

#include <algorithm>
#include <map>
#include <memory>
#include <utility>

namespace plovik {

using namespace Qt::StringLiterals;
using gitkit::MovableCommit;
using gitkit::MovableCommits;
using gitkit::RewriteMark;
using gitkit::RewriteOutcome;
using gitkit::RewritePlan;
using gitkit::RewriteStep;

namespace {

gitkit::Hashes hashesOf(const MovableCommits& movable)
{
    gitkit::Hashes hashes;
    for (const MovableCommit& commit : movable.commits)
        hashes.push_back(commit.hash);
    return hashes;
}

std::string bytesOfMessage(const QString& text)
{
    std::string message = text.toStdString();
    std::erase(message, '\0');
    while (message.ends_with('\n'))
        message.pop_back();
    return message + '\n';
}

/// So many steps of a plan are found out before the rest: it takes a moment.
constexpr std::size_t stepsAtFirst = 4;

bool saysWhereItBelongs(const std::string& message)
{
    return message.starts_with("fixup! ") || message.starts_with("squash! ") || message.starts_with("amend! ");
}

} // namespace

Rewriting::Rewriting(const GitAccess& git, WindowState& window, Snapshot& snapshot, Changes& changes, History& history)
    : window_(window), snapshot_(snapshot), changes_(changes), history_(history),
      movableReading_(git, &plovik::readMovable, [this] { takeMovable(); }),
      beginning_(git, &readRehearsal, [this] { takeBeginning(); }),
      rehearsal_(git, &readRehearsal, [this] { takeOutcome(); })
{
    // Also a branch that was made or moved, and a fetch, change what may be changed.
    snapshot_.follow({.refsRead = [this] { readMovable(); }});
    rowsNotifier_ = history_.history.addNotifier([this] { selectWanted(); });
    selectionNotifier_ = window_.selection.addNotifier([this] { followBranch(); });
}

Rewriting::~Rewriting() = default;

/// Goes from a commit that is no more to what has become of it.
void Rewriting::selectWanted()
{
    if (!wanted_.empty() && history_.history.value().contains(wanted_))
        window_.selectCommit(std::exchange(wanted_, {}));
}

// Reading.

void Rewriting::watch()
{
    if (!std::exchange(isWatching_, true))
        readMovable();
}

/// Returns what the plan is for: the local branch whose history is shown, or else HEAD. An open plan stays with its own.
MovableQuestion Rewriting::wantedMovable() const
{
    const gitkit::RepoStatus& now = snapshot_.status.value();
    const SidebarItem& shown = window_.selection.value();
    std::string branch = shown.isRef() ? shown.refName : std::string();
    if (plan.value())
        branch = plan.value()->isElsewhere ? plan.value()->branch : std::string();
    const std::vector<gitkit::GitRef>& branches = snapshot_.branches.value();
    const auto found = std::ranges::find(branches, branch, &gitkit::GitRef::fullName);
    if (found == branches.end() || found->isHead)
        return {.tip = now.oid.value_or(std::string())};
    return {.branch = branch, .tip = found->hash};
}

void Rewriting::readMovable()
{
    if (isWatching_ && snapshot_.hasLoaded.value())
        movableReading_.askAgain(wantedMovable());
}

/// Reads when another branch is meant.
void Rewriting::followBranch()
{
    if (isWatching_ && snapshot_.hasLoaded.value())
        movableReading_.ask(wantedMovable());
}

bool Rewriting::isKnown() const
{
    return movableReading_.answered() && !movableReading_.isReading() && movableReading_.answered() == wantedMovable();
}

void Rewriting::takeMovable()
{
    if (!movableReading_.answer() || movableReading_.failure())
        return;
    const MovableCommits now = *movableReading_.answer();
    if (plan.value())
        follow(now);
    movable = now;
}

/// Keeps the plan in line with the commits that there are.
void Rewriting::follow(const MovableCommits& now)
{
    const RewritePlan& open = *plan.value();
    const gitkit::Hashes hashes = hashesOf(now);
    if (hashes == open.commits && now.branch == open.branch && now.isElsewhere == open.isElsewhere)
        return;
    const auto start = std::ranges::search(hashes, open.commits);
    if (start.empty() || now.branch != open.branch) {
        cancel();
        window_.tell(tr("The plan was dropped: its commits are not on the branch any more."));
        return;
    }
    RewritePlan next = open;
    next.isElsewhere = now.isElsewhere;
    const bool isSame = start.end() == hashes.end();
    for (auto added = start.end(); added != hashes.end(); ++added) {
        next.commits.push_back(*added);
        next.steps.push_back({.commit = *added});
    }
    if (!isSame)
        window_.tell(tr("The plan was made again on top of the new commits."));
    show(std::move(next));
}

void Rewriting::rehearse(const RewritePlan& next)
{
    RewritePlan first = gitkit::firstSteps(next, stepsAtFirst);
    if (first.steps.size() < next.steps.size())
        beginning_.ask(std::move(first));
    else
        beginning_.forget();
    rehearsal_.ask(next);
    takeBeginning();
}

void Rewriting::takeBeginning()
{
    if (!outcome.value() && beginning_.answer() && beginning_.answered() == beginning_.asked())
        marks = beginning_.answer()->marks;
}

void Rewriting::takeOutcome()
{
    if (rehearsal_.isReading() || !plan.value())
        return;
    // What cannot be found out is found out by doing it.
    outcome = rehearsal_.failure() ? RewriteOutcome{.marks = std::vector<RewriteMark>(plan.value()->steps.size())}
                                   : *rehearsal_.answer();
    marks = outcome.value()->marks;
}

// What is said.

const MovableCommit* Rewriting::find(const std::string& commit) const
{
    const auto& commits = movable.value().commits;
    const auto found = std::ranges::find(commits, commit, &MovableCommit::hash);
    return found == commits.end() ? nullptr : &*found;
}

QString Rewriting::whyNot(const gitkit::Hashes& commits) const
{
    if (!isWatching_ || !movableReading_.answered() || movableReading_.answered()->branch != wantedMovable().branch)
        return tr("The commits are still being read.");
    const MovableCommits& known = movable.value();
    const bool areMovable =
        !commits.empty() && std::ranges::all_of(commits, [this](const auto& commit) { return find(commit); });
    if (areMovable && !known.heldBy.empty())
        return tr("%1 is checked out in %2.").arg(inQuotes(withoutBranchPrefix(known.branch)), inQuotes(known.heldBy));
    if (areMovable)
        return {};
    const bool hasNoneOfItsOwn = !commits.empty() && !known.publishedOn.empty() &&
                                 std::ranges::all_of(known.commits, &MovableCommit::isPublished);
    if (hasNoneOfItsOwn)
        return tr("Nothing here is only yours. Commits above %1 can be moved, edited and dropped.")
            .arg(inQuotes(known.publishedOn));
    return known.isElsewhere
               ? tr("Only commits of %1 can be changed, down to its first merge.")
                     .arg(inQuotes(withoutBranchPrefix(known.branch)))
               : tr("Only commits of the branch that is checked out can be changed, down to its first merge.");
}

std::optional<RewriteMark> Rewriting::markOf(const std::string& commit) const
{
    if (!plan.value())
        return {};
    const auto& steps = plan.value()->steps;
    const auto step = std::ranges::find(steps, commit, &gitkit::RewriteStep::commit);
    const auto place = static_cast<std::size_t>(step - steps.begin());
    const auto& known = marks.value();
    return place < known.size() ? std::optional(known[place]) : std::nullopt;
}

std::string Rewriting::messageOf(const std::string& commit) const
{
    const RewritePlan now = current();
    const std::string into = gitkit::squashedInto(now, commit);
    const std::string head = into.empty() ? commit : into;
    std::string message;
    for (const RewriteStep& step : now.steps) {
        const MovableCommit* const own = find(step.commit);
        const std::string words = step.message.value_or(own ? own->message : std::string());
        if (step.commit == head)
            message = words;
        else if (step.act == Act::squash && gitkit::squashedInto(now, step.commit) == head)
            message = gitkit::joinedMessages(message, words);
    }
    return message;
}

int Rewriting::fixups() const
{
    const RewritePlan now = current();
    std::vector<std::string> messages;
    for (const MovableCommit& commit : movable.value().commits)
        messages.push_back(commit.message);
    if (std::ranges::none_of(messages, saysWhereItBelongs) || messages.size() != now.commits.size())
        return 0;
    const RewritePlan squashed = gitkit::autosquashed(now, messages);
    return gitkit::countsOf(squashed).squashed - gitkit::countsOf(now).squashed;
}

QString Rewriting::sentence() const
{
    return plan.value() ? planSentence(*plan.value(), outcome.value(), movable.value()) : QString();
}

QString Rewriting::publishedSentence() const
{
    return plan.value() ? planPublishedSentence(*plan.value(), movable.value()) : QString();
}

QString Rewriting::whyNotApplied() const
{
    const bool isClean = outcome.value() && outcome.value()->result == RewriteOutcome::Result::clean;
    if (!plan.value() || !plan.value()->isElsewhere || !outcome.value() || isClean)
        return {};
    return tr("Check out %1 first: git needs its files where commits conflict.")
        .arg(inQuotes(withoutBranchPrefix(plan.value()->branch)));
}

QString Rewriting::applyTitle() const { return planApplyTitle(outcome.value()); }

// Changing the plan.

/// Returns the open plan, or one that changes nothing.
RewritePlan Rewriting::current() const
{
    if (plan.value())
        return *plan.value();
    const MovableCommits& now = movable.value();
    RewritePlan untouched = gitkit::untouchedPlan(now.branch, now.base, hashesOf(now));
    untouched.isElsewhere = now.isElsewhere;
    return untouched;
}

void Rewriting::take(RewritePlan next)
{
    if (next == current())
        return;
    if (gitkit::isUntouched(next))
        show(std::nullopt);
    else
        show(std::move(next));
}

void Rewriting::show(std::optional<RewritePlan> next)
{
    outcome = std::nullopt;
    marks = std::vector<RewriteMark>();
    gitkit::Hashes order;
    if (next) {
        for (auto step = next->steps.rbegin(); step != next->steps.rend(); ++step)
            order.push_back(step->commit);
        rehearse(*next);
    } else {
        beginning_.forget();
        rehearsal_.forget();
    }
    plan = next;
    history_.arrange(std::move(order));
    if (plan.value() && !rehearsal_.isReading())
        takeOutcome();
    if (!plan.value())
        followBranch();
}

void Rewriting::move(const gitkit::Hashes& commits, const std::string& below)
{
    take(gitkit::moved(current(), commits, below));
}
void Rewriting::moveUp(const gitkit::Hashes& commits) { take(gitkit::movedUp(current(), commits)); }
void Rewriting::moveDown(const gitkit::Hashes& commits) { take(gitkit::movedDown(current(), commits)); }
void Rewriting::squash(const gitkit::Hashes& commits, const std::string& into, Act act)
{
    take(gitkit::squashed(current(), commits, into, act));
}
void Rewriting::squashIntoParent(const gitkit::Hashes& commits, Act act)
{
    take(gitkit::squashedIntoParent(current(), commits, act));
}
void Rewriting::drop(const gitkit::Hashes& commits) { take(gitkit::dropped(current(), commits)); }
void Rewriting::keep(const gitkit::Hashes& commits) { take(gitkit::kept(current(), commits)); }
void Rewriting::stopAt(const std::string& commit) { take(gitkit::stoppingAt(current(), commit)); }

void Rewriting::reword(const std::string& commit, const QString& message)
{
    const std::string words = bytesOfMessage(message);
    if (words != bytesOfMessage(QString::fromStdString(messageOf(commit))))
        take(gitkit::reworded(current(), commit, words));
}

void Rewriting::split(const std::string& commit, gitkit::CommitPart part, const QString& first, const QString& second)
{
    RewritePlan next = gitkit::split(current(), commit, std::move(part), bytesOfMessage(first), bytesOfMessage(second));
    if (plan.value() || next == current())
        return take(std::move(next));
    // Nothing has to be merged for it, so any git can do it in memory.
    Change change = inMemory(next);
    change.failed = [this, next](const Failure&) {
        if (!plan.value()) {
            take(next);
            follow(movable.value());
        }
        return false;
    };
    changes_.run(std::move(change));
}

void Rewriting::squashFixups()
{
    std::vector<std::string> messages;
    for (const MovableCommit& commit : movable.value().commits)
        messages.push_back(commit.message);
    take(gitkit::autosquashed(current(), messages));
}

void Rewriting::dropEmptied()
{
    gitkit::Hashes emptied;
    for (const RewriteStep& step : current().steps) {
        if (const auto mark = markOf(step.commit); mark && mark->kind == RewriteMark::Kind::emptied)
            emptied.push_back(step.commit);
    }
    drop(emptied);
}

void Rewriting::cancel()
{
    if (plan.value())
        show(std::nullopt);
}

// Carrying it out.

QString Rewriting::shownBranch(const std::string& branch)
{
    return branch.empty() ? u"HEAD"_s : shownText(withoutBranchPrefix(branch));
}

void Rewriting::apply()
{
    if (!plan.value())
        return;
    if (const QString why = whyNotApplied(); !why.isEmpty())
        return window_.tell(why);
    if (!gitkit::dropsAll(*plan.value()))
        return applyNow();
    Confirmation question;
    question.title = tr("Drop all %Ln commit(s)?", nullptr, static_cast<int>(plan.value()->steps.size()));
    question.message = tr("None of the commits of %1 that can be changed would be left. Undo brings them back.")
                           .arg(inQuotes(withoutBranchPrefix(movable.value().branch)));
    question.actionTitle = tr("Drop All");
    question.action = [this] {
        if (plan.value())
            applyNow();
    };
    window_.ask(std::move(question));
}

void Rewriting::applyNow()
{
    const RewritePlan& open = *plan.value();
    const bool isClean = outcome.value() && outcome.value()->result == RewriteOutcome::Result::clean;
    const bool stops = gitkit::countsOf(open).stops > 0;
    changes_.run(isClean && !stops ? inMemory(open) : byGit(open));
}

/// Not every plan was shown before it is carried out.
void Rewriting::tellBranches(Change& change, const RewritePlan& what) const
{
    const QString moved = planBranchesMoved(what, movable.value().branches);
    if (change.undo && !moved.isEmpty())
        change.undo->done += u' ' + moved;
}

Change Rewriting::inMemory(const RewritePlan& what)
{
    const auto prepared = std::make_shared<RewriteOutcome>();
    Change change = rewriteInMemory(what, shownBranch(what.branch), prepared);
    tellBranches(change, what);
    change.succeeded = [this, prepared] {
        const std::map<std::string, std::string> now(prepared->rewritten.begin(), prepared->rewritten.end());
        const auto& selected = window_.selectedCommit.value();
        const auto found = selected ? now.find(*selected) : now.end();
        wanted_ = found == now.end() ? std::string() : found->second;
        cancel();
    };
    return change;
}

Change Rewriting::byGit(const RewritePlan& what)
{
    Change change = rewriteThroughGit(what, shownBranch(what.branch));
    change.succeeded = [this] { cancel(); };
    change.failed = [this](const Failure& failure) {
        // Where it stops, what is in progress tells the rest.
        const bool hasStopped = failure.kind == gitkit::ErrorKind::conflicts && failure.command.has_value();
        if (hasStopped)
            cancel();
        return hasStopped;
    };
    return change;
}

void Rewriting::rebase(const gitkit::RebaseProposal& proposal, const QString& onto)
{
    if (plan.value())
        return window_.tell(tr("Apply or cancel the plan first."));
    const bool isClean = proposal.outcome.result == RewriteOutcome::Result::clean;
    Change change = isClean ? inMemory(proposal.plan) : byGit(proposal.plan);
    sayRebase(change, shownBranch(proposal.plan.branch), onto);
    if (isClean)
        tellBranches(change, proposal.plan);
    changes_.run(std::move(change));
}

} // namespace plovik
