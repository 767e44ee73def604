// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/Refs.h"

#include "GitKit/records/RemoteBranch.h"
#include "GitKit/repository/Branches.h"
#include "GitKit/repository/Commits.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/undo/Reset.h"
#include "app/store/Changes.h"
#include "app/store/Obstacles.h"
#include "app/store/SheetKind.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"
#include "app/store/actions/Pushes.h"
#include "app/store/actions/WaysOn.h"

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <stop_token>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik::actions {

using gitkit::GitRef;
using gitkit::GitRepository;

namespace {

struct RefTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Refs)
};

/// So many commits are counted that only one branch has.
constexpr int mostCounted = 1000;
/// A question waits no longer for the count.
constexpr std::chrono::milliseconds countingTime{2000};

/// Returns the name of a remote branch's local counterpart, which is the branch's name without that of the remote.
std::string localNameOf(const std::string& remoteBranch, const std::vector<std::string>& remotes)
{
    const gitkit::RemoteBranch parts = gitkit::remoteBranchOf(remoteBranch, remotes);
    return parts.remote.empty() ? remoteBranch : parts.branch;
}

/// Asks before commits are left that nothing but a detached HEAD leads to, and begins the change if that is all right.
QCoro::Task<> leavingAfterCheck(Actors actors, std::string target, Change leave)
{
    gitkit::LeftBehind left;
    std::optional<Failure> failure;
    try {
        left = co_await actors.git.read(&gitkit::commitsLeftBehind, target);
    } catch (const std::exception& thrown) {
        failure = failureOf(thrown);
    }
    if (failure) {
        actors.window.report(*failure);
        co_return;
    }
    if (left.commits == 0) {
        actors.changes.run(std::move(leave));
        co_return;
    }
    Confirmation question;
    question.title = RefTexts::tr("Leave %Ln commit(s) behind?", nullptr, left.commits);
    question.message = RefTexts::tr("HEAD is detached, and no branch or tag leads to what was committed here. A new "
                                    "branch keeps it within reach.");
    question.actionTitle = RefTexts::tr("Leave");
    question.action = [&changes = actors.changes, leave] { changes.run(leave); };
    question.choices.push_back({RefTexts::tr("New Branch…"), [&window = actors.window, head = left.head] {
                                    window.showSheet(NewBranchSheet{head});
                                }});
    actors.window.ask(std::move(question));
}

/// Returns a command that lists the files in which two states differ.
std::vector<std::string> listing(std::vector<std::string> command)
{
    command.insert(command.begin() + 1, {"--name-only", "-z", "--no-renames", "--no-ext-diff"});
    command.emplace_back("--");
    return command;
}

/// Begins a change that checks out `target`; asks first where commits would be left behind. Where a branch was checked
/// out at the last status, the change itself looks again, because HEAD may have been detached elsewhere since.
void leaveHead(Actors actors, const std::string& target, Change leave)
{
    if (actors.snapshot.status.value().isDetached()) {
        launch(leavingAfterCheck(actors, target, std::move(leave)));
        return;
    }
    const auto wouldLeave = std::make_shared<std::atomic_bool>(false);
    Change careful = leave;
    careful.operation = [operation = leave.operation, target, wouldLeave](const GitRepository& repo) {
        if (gitkit::commitsLeftBehind(repo, target).commits > 0) {
            *wouldLeave = true;
            throw gitkit::GitError("checkout", 1, "HEAD is detached now.", gitkit::ErrorKind::changedMeanwhile);
        }
        operation(repo);
    };
    careful.failed = [actors, target, leave, wouldLeave](const Failure& failure) {
        if (!*wouldLeave)
            return leave.failed && leave.failed(failure);
        launch(leavingAfterCheck(actors, target, leave));
        return true;
    };
    actors.changes.run(std::move(careful));
}

/// The same, and changed files that are in the way can be stashed.
void leaveHeadOrStash(Actors actors, const std::string& target, const QString& shown, Change leave)
{
    const auto begin = [actors, target](Change change) { leaveHead(actors, target, std::move(change)); };
    begin(waysOn::offeringStash(actors, std::move(leave),
                                {.message = RefTexts::tr("Before checkout of %1").arg(shown),
                                 .listing = listing({"diff-tree", "-r", "HEAD", target}),
                                 .begin = begin}));
}

void checkOut(Actors actors, const std::string& target, const QString& shown, GitAccess::Operation operation,
              const std::optional<std::string>& made = {})
{
    // A double click asks for what a menu would not offer.
    if (const QString why = obstacle(actors.changes, actors.snapshot, Verb::checkOut); !why.isEmpty()) {
        actors.window.tell(why);
        return;
    }
    leaveHeadOrStash(actors, target, shown,
                     {.verb = Verb::checkOut,
                      .title = RefTexts::tr("Checking out %1…").arg(shown),
                      .operation = std::move(operation),
                      .undo = undoable::checkout(target, shown, made)});
}

void forceDelete(Changes& changes, const std::string& branch)
{
    changes.run(
        {.verb = Verb::deleteBranch,
         .title = RefTexts::tr("Deleting branch…"),
         .operation = [branch](const GitRepository& repo) { repo.deleteBranch(branch, gitkit::Deletion::force); },
         .undo = undoable::deleteBranch(branch)});
}

/// `detail` says what would go.
void confirmForceDelete(WindowState& window, Changes& changes, const std::string& branch, const QString& detail)
{
    Confirmation question;
    question.title = RefTexts::tr("%1 is not fully merged").arg(inQuotes(branch));
    question.message = RefTexts::tr("Deleting it anyway may lose commits that exist only on this branch.");
    question.detail = detail;
    question.actionTitle = RefTexts::tr("Force Delete");
    question.action = [&changes, branch] { forceDelete(changes, branch); };
    window.ask(std::move(question));
}

void deleteBranch(WindowState& window, Changes& changes, const std::string& branch, const QString& detail)
{
    changes.run(
        {.verb = Verb::deleteBranch,
         .title = RefTexts::tr("Deleting branch…"),
         .operation = [branch](const GitRepository& repo) { repo.deleteBranch(branch, gitkit::Deletion::ifMerged); },
         .undo = undoable::deleteBranch(branch),
         .failed =
             [&window, &changes, branch, detail](const Failure& failure) {
                 if (failure.kind != gitkit::ErrorKind::notFullyMerged)
                     return false;
                 confirmForceDelete(window, changes, branch, detail);
                 return true;
             }});
}

bool isUpstreamGone(const Snapshot& now, const GitRef& branch)
{
    return branch.upstream && !branch.upstreamRef.empty() && !now.hasRef(branch.upstreamRef);
}

/// The branch goes there first: where that is refused, it stays here, too.
void addDeletionOnRemote(Actors actors, const GitRef& branch, Confirmation& question)
{
    const std::vector<GitRef>& all = actors.snapshot.remoteBranches.value();
    const auto upstream = std::ranges::find(all, branch.upstreamRef, &GitRef::fullName);
    if (upstream == all.end())
        return;
    const gitkit::RemoteBranch there = gitkit::remoteBranchOf(upstream->name, actors.snapshot.remotes.value());
    if (there.remote.empty() || there.branch != branch.name)
        return;
    question.message += u' ' + RefTexts::tr("What is deleted on %1 goes for everybody, and Undo cannot bring it back.")
                                   .arg(shownText(there.remote));
    question.choices.push_back({RefTexts::tr("Delete Here and on %1").arg(shownText(there.remote)),
                                [actors, there, hash = upstream->hash, name = branch.name, detail = question.detail] {
                                    deleteOnRemote(actors, there, hash, [actors, name, detail] {
                                        deleteBranch(actors.window, actors.changes, name, detail);
                                    });
                                }});
}

/// nullopt stands for a number that is not known.
QString onlyThere(std::optional<int> commits)
{
    if (!commits)
        return RefTexts::tr("How many commits are on no other branch is not known.");
    if (*commits == 0)
        return {};
    return *commits < mostCounted ? RefTexts::tr("%Ln commit(s) are on no other branch.", nullptr, *commits)
                                  : RefTexts::tr("%L1 commits or more are on no other branch.").arg(mostCounted);
}

void askToDelete(Actors actors, const GitRef& branch, const QString& detail)
{
    Confirmation question;
    question.title = RefTexts::tr("Delete branch %1?").arg(inQuotes(branch.name));
    question.message = RefTexts::tr("The branch is only deleted if it is fully merged.");
    if (isUpstreamGone(actors.snapshot, branch))
        question.message =
            RefTexts::tr("Its upstream %1 is gone.").arg(shownText(*branch.upstream)) + u' ' + question.message;
    question.detail = detail;
    question.actionTitle = RefTexts::tr("Delete");
    question.action = [actors, name = branch.name, detail] {
        deleteBranch(actors.window, actors.changes, name, detail);
    };
    question.kind = u"deleteBranch"_s;
    addDeletionOnRemote(actors, branch, question);
    actors.window.ask(std::move(question));
}

/// Asks with the number of commits that only this branch has, unless counting takes too long.
QCoro::Task<> askingToDelete(Actors actors, GitRef branch)
{
    const auto stop = std::make_shared<std::stop_source>();
    const auto limit = actors.git.worker().after(countingTime, [stop] { stop->request_stop(); });
    std::optional<int> commits;
    try {
        commits = co_await actors.git.readUntil(stop->get_token(), &gitkit::commitsOnlyOn, branch.name, std::string(),
                                                mostCounted);
    } catch (const std::exception&) {
        commits.reset();
    }
    askToDelete(actors, branch, onlyThere(commits));
}

void deleteTag(Changes& changes, const std::string& tag)
{
    changes.run({.verb = Verb::deleteTag,
                 .title = RefTexts::tr("Deleting tag…"),
                 .operation = [tag](const GitRepository& repo) { repo.deleteTag(tag); },
                 .undo = undoable::deleteTag(tag)});
}

} // namespace

QString damage(const GitRef& ref)
{
    return ref.hash.empty() ? RefTexts::tr("%1 is damaged: it leads to no commit, so it cannot be checked out.")
                                  .arg(inQuotes(ref.name))
                            : QString();
}

void checkout(Actors actors, const GitRef& ref)
{
    if (const QString why = damage(ref); !why.isEmpty()) {
        actors.window.tell(why);
        return;
    }
    if (ref.kind != GitRef::Kind::remote) {
        checkOut(actors, ref.fullName, shownText(ref.name),
                 [name = ref.fullName](const GitRepository& repo) { repo.checkout(name); });
        return;
    }
    const std::string local = localNameOf(ref.name, actors.snapshot.remotes.value());
    const std::vector<GitRef>& branches = actors.snapshot.branches.value();
    const auto counterpart = std::ranges::find(branches, local, &GitRef::name);
    const bool exists = counterpart != branches.end();
    if (exists && counterpart->hash.empty()) {
        checkout(actors, *counterpart);
        return;
    }
    checkOut(
        actors, exists ? counterpart->fullName : ref.fullName, shownText(local),
        [local, exists, remote = ref.fullName](const GitRepository& repo) {
            if (exists)
                repo.checkout("refs/heads/" + local);
            else
                repo.checkoutTracking(remote, local);
        },
        exists ? std::nullopt : std::optional(local));
}

void checkoutCommit(Actors actors, const std::string& hash)
{
    checkOut(actors, hash, shownText(gitkit::shortHash(hash)),
             [hash](const GitRepository& repo) { repo.checkout(hash); });
}

void createBranch(Actors actors, const std::string& name, const std::optional<std::string>& startPoint,
                  gitkit::AfterCreating after)
{
    Change create{.verb = Verb::createBranch,
                  .title = RefTexts::tr("Creating branch…"),
                  .operation = [=](const GitRepository& repo) { repo.createBranch(name, startPoint, after); },
                  .undo = undoable::createBranch(name, startPoint, after)};
    if (startPoint && after == gitkit::AfterCreating::checkOut)
        leaveHeadOrStash(actors, *startPoint, shownText(name), std::move(create));
    else
        actors.changes.run(std::move(create));
}

void createTag(Actors actors, const std::string& name, const std::string& target, const std::string& message)
{
    actors.changes.run({.verb = Verb::createTag,
                        .title = RefTexts::tr("Creating tag…"),
                        .operation = [=](const GitRepository& repo) { repo.createTag(name, target, message); },
                        .undo = undoable::createTag(name)});
}

void confirmDelete(Actors actors, const GitRef& ref)
{
    if (ref.kind == GitRef::Kind::remote)
        return;
    if (ref.kind == GitRef::Kind::local) {
        launch(askingToDelete(actors, ref));
        return;
    }
    Confirmation question;
    question.title = RefTexts::tr("Delete tag %1?").arg(inQuotes(ref.name));
    question.message = RefTexts::tr("The tag is deleted locally. Remotes are not touched.");
    question.actionTitle = RefTexts::tr("Delete");
    question.action = [&changes = actors.changes, name = ref.name] { deleteTag(changes, name); };
    question.kind = u"deleteTag"_s;
    actors.window.ask(std::move(question));
}

void reset(Actors actors, const Reset& how)
{
    const auto& branch = actors.snapshot.status.value().branch;
    const QString shown = branch ? shownText(*branch) : u"HEAD"_s;
    Change change{
        .verb = Verb::reset,
        .title = RefTexts::tr("Resetting %1…").arg(shown),
        .operation = [how](const GitRepository& repo) { gitkit::reset(repo, how.kind, how.head, how.target); },
        .undo = undoable::reset(how.kind, how.target, shown)};
    // The sheet has named the files that git does not know.
    if (how.kind == gitkit::ResetKind::hard)
        change.consent = StepKeeping::Consent::movesUntracked;
    actors.changes.run(std::move(change));
}

} // namespace plovik::actions
