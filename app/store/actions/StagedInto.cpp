// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/StagedInto.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/rewrite/Absorbing.h"
#include "app/store/Changes.h"
#include "app/store/Obstacles.h"
#include "app/store/Rewriting.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"

#include <QCoreApplication>

#include <memory>
#include <set>

namespace plovik::actions {

using gitkit::AbsorbProposal;
using gitkit::CommitHooks;
using gitkit::GitRepository;
using gitkit::RewriteOutcome;
using gitkit::RewritePlan;

namespace {

struct IntoTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::StagedInto)
};

/// Returns what handles the refusal of a hook: `again` begins anew, with hooks or without.
std::function<bool(const Failure&)> offeringWithoutHooks(WindowState& window, std::function<void(CommitHooks)> again)
{
    return [&window, again = std::move(again)](const Failure& failure) {
        if (failure.kind != gitkit::ErrorKind::rejectedByHook)
            return false;
        window.report(failure, {{IntoTexts::tr("Commit Without Hooks"), [again] { again(CommitHooks::skip); }},
                                {IntoTexts::tr("Run Again"), [again] { again(CommitHooks::run); }}});
        return true;
    };
}

RewritePlan untouchedPlanOf(const Rewriting& rewriting)
{
    const gitkit::MovableCommits& movable = rewriting.movable.value();
    gitkit::Hashes hashes;
    for (const gitkit::MovableCommit& commit : movable.commits)
        hashes.push_back(commit.hash);
    return gitkit::untouchedPlan(movable.branch, movable.base, hashes);
}

/// Commits what is staged on top, as something that belongs into the other commit.
void commitFixup(Actors actors, const IntoCommit& into, CommitHooks hooks)
{
    const std::string message = into.message ? "amend! " + into.subject + "\n\n" + *into.message //
                                             : "fixup! " + into.subject;
    Change change{.verb = Verb::commit, .title = IntoTexts::tr("Committing…"), .operation = {}};
    change.operation = [message, hooks](const GitRepository& repo) {
        repo.commit(message, gitkit::CommitMode::create, hooks);
    };
    change.undo = undoable::commit(message);
    change.undo->scope.message.clear(); // nobody has typed it
    change.succeeded = into.done;
    change.failed =
        offeringWithoutHooks(actors.window, [actors, into](CommitHooks next) { commitFixup(actors, into, next); });
    actors.changes.run(std::move(change));
}

void askForFixup(Actors actors, const IntoCommit& into, CommitHooks hooks)
{
    Confirmation question;
    question.title = IntoTexts::tr("What is staged does not fit into %1").arg(inQuotes(into.subject));
    question.message =
        IntoTexts::tr("Its lines are not there yet, or a commit above it changes them. It can be committed on "
                      "top as a fixup commit, which is squashed into it later.");
    question.actionTitle = IntoTexts::tr("Make a Fixup Commit Instead");
    question.risk = Confirmation::Risk::none;
    question.action = [actors, into, hooks] { commitFixup(actors, into, hooks); };
    actors.window.ask(std::move(question));
}

} // namespace

QString whyNotInto(const Changes& changes, const Snapshot& snapshot, const Rewriting& rewriting)
{
    if (rewriting.plan.value())
        return IntoTexts::tr("Apply or cancel the plan first");
    return obstacle(changes, snapshot, Verb::rewrite);
}

void absorb(Actors actors, const AbsorbProposal& proposal, CommitHooks hooks)
{
    int count = 0;
    std::set<std::string> targets;
    for (const gitkit::AbsorbHunk& hunk : proposal.hunks) {
        if (!hunk.target.empty() && ++count > 0)
            targets.insert(hunk.target);
    }
    const RewritePlan plan = gitkit::untouchedPlan(proposal.branch, proposal.base, proposal.commits);
    const auto prepared = std::make_shared<RewriteOutcome>();
    Change change{.verb = Verb::rewrite, .title = IntoTexts::tr("Absorbing…"), .operation = {}};
    change.prepare = [proposal, hooks, prepared](const GitRepository& repo) {
        *prepared = gitkit::absorbed(repo, proposal, hooks);
    };
    change.operation = [plan, prepared](const GitRepository& repo) {
        gitkit::applyStagedInto(repo, plan, *prepared, "plovik: absorb");
    };
    change.undo = undoable::absorb(count, static_cast<int>(targets.size()), plan);
    change.failed =
        offeringWithoutHooks(actors.window, [actors, proposal](CommitHooks next) { absorb(actors, proposal, next); });
    actors.changes.run(std::move(change));
}

void commitStagedInto(Actors actors, const IntoCommit& into, CommitHooks hooks)
{
    const RewritePlan plan = untouchedPlanOf(actors.rewriting);
    const auto prepared = std::make_shared<RewriteOutcome>();
    Change change{.verb = Verb::rewrite, .title = IntoTexts::tr("Committing…"), .operation = {}};
    change.prepare = [plan, into, hooks, prepared](const GitRepository& repo) {
        *prepared = gitkit::withStagedIn(repo, plan, into.commit, {.message = into.message, .hooks = hooks});
    };
    change.operation = [plan, prepared](const GitRepository& repo) {
        gitkit::applyStagedInto(repo, plan, *prepared, "plovik: commit into an older one");
    };
    change.undo = undoable::commitInto(into.subject, plan);
    change.succeeded = into.done;
    change.failed = [actors, into, hooks,
                     refused = offeringWithoutHooks(actors.window, [actors, into](CommitHooks next) {
                         commitStagedInto(actors, into, next);
                     })](const Failure& failure) {
        if (failure.kind != gitkit::ErrorKind::conflicts)
            return refused(failure);
        askForFixup(actors, into, hooks);
        return true;
    };
    actors.changes.run(std::move(change));
}

} // namespace plovik::actions
