// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/Operation.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Operations.h"
#include "app/store/Changes.h"
#include "app/store/CommitDraft.h"
#include "app/store/Discards.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"
#include "app/store/actions/OperationWords.h"

#include <QCoreApplication>

#include <atomic>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik::actions {

using gitkit::CommitMode;
using gitkit::GitRepository;
using gitkit::OperationInProgress;
using Kind = OperationInProgress::Kind;
using Step = gitkit::OperationStep;

namespace {

struct OperationTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Operation)
};

/// The message that the user typed for the commit that continuing makes.
struct OwnMessage {
    std::string text;
    CommitMode mode = CommitMode::create;
};

/// Whether the message was recorded; git may fail after that. Set on the worker, read after the operation has ended.
using Recorded = std::shared_ptr<std::atomic_bool>;

/// Commits with the typed message when there is something to commit. Returns whether the operation must still be
/// continued.
bool commitFirst(const GitRepository& repo, const OperationInProgress& operation, OwnMessage message,
                 const std::filesystem::path& gitDirectory, gitkit::CommitHooks hooks, std::atomic_bool& recorded)
{
    const gitkit::RepoStatus now = repo.status();
    if (message.mode == CommitMode::create && now.stagedCount() == 0 && operation.kind != Kind::merge)
        return true;
    // The step belongs to the commit before it, so it is recorded by amending that commit.
    if (operation.meldsInto && operation.meldsInto == now.oid)
        message.mode = CommitMode::amend;
    repo.commit(message.text, message.mode, hooks);
    recorded = true;
    const std::optional<OperationInProgress> left = gitkit::operationInProgress(repo, gitDirectory);
    return left && left->kind == operation.kind;
}

QString lossText(const gitkit::AbortLoss& loss, Kind kind)
{
    QStringList sentences;
    if (!loss.paths.empty())
        sentences.append(operationWords::lostFiles(loss.paths));
    if (loss.steps > 0)
        sentences.append(operationWords::undoneSteps(kind, loss.steps));
    sentences.append(OperationTexts::tr("Untracked files stay."));
    return sentences.join(u' ');
}

void endOperation(Actors actors, const OperationInProgress& now, Step step);

/// Called when git could not go back. Offers to end the operation without going back.
void confirmForget(Actors actors, const OperationInProgress& now, const QString& problem)
{
    Confirmation question;
    question.title = operationWords::cannotGoBack(now.kind);
    question.message = problem + u"\n\n"_s + operationWords::canEndHere(now.kind);
    question.actionTitle = OperationTexts::tr("End Here");
    question.action = [actors, now] { endOperation(actors, now, Step::forget); };
    actors.window.ask(std::move(question));
}

void endOperation(Actors actors, const OperationInProgress& now, Step step)
{
    const bool resets = now.kind == Kind::bisect;
    Change change{.verb = Verb::endOperation,
                  .title = operationWords::ending(now.kind),
                  .operation = [now, step](const GitRepository& repo) { gitkit::proceed(repo, now, step); },
                  .undo = undoable::operation(now.kind, step)};
    // git cannot go back when files are missing or the branch is gone.
    if (step == Step::abort && (now.isIncomplete || resets)) {
        change.failed = [actors, now](const Failure& failure) {
            confirmForget(actors, now, failure.message);
            return true;
        };
    }
    if (step == Step::abort && !resets)
        actors.discards.runStep(std::move(change));
    else
        actors.changes.run(std::move(change));
}

QCoro::Task<> steppingAfterCheck(Actors actors, OperationInProgress now, std::filesystem::path gitDirectory, Step step,
                                 QString why = {});

/// Where a commit would change nothing, offers to skip it. Returns whether it does.
bool offersSkip(Actors actors, const OperationInProgress& now, const Failure& failure)
{
    const std::optional<std::filesystem::path>& directory = actors.snapshot.gitDirectory();
    if (failure.kind != gitkit::ErrorKind::nothingToDo || !now.canSkip() || !directory)
        return false;
    launch(steppingAfterCheck(actors, now, *directory, Step::skip,
                              OperationTexts::tr("This commit would change nothing here. It can be skipped.")));
    return true;
}

void skipNow(Actors actors, const OperationInProgress& now)
{
    actors.discards.runStep({.verb = Verb::skipStep,
                             .title = OperationTexts::tr("Skipping commit…"),
                             .operation = [now](const GitRepository& repo) { gitkit::proceed(repo, now, Step::skip); },
                             .undo = undoable::operation(now.kind, Step::skip),
                             .failed = [actors, now](const Failure& failure) { // the next one may be such a commit, too
                                 return offersSkip(actors, now, failure);
                             }});
}

void takeStep(Actors actors, const OperationInProgress& now, Step step)
{
    if (step == Step::skip)
        skipNow(actors, now);
    else
        endOperation(actors, now, step);
}

/// Skips a commit or aborts, after a question where work would be lost, or where `why` says why the user is asked.
QCoro::Task<> steppingAfterCheck(Actors actors, OperationInProgress now, std::filesystem::path gitDirectory, Step step,
                                 QString why)
{
    Confirmation question;
    try {
        gitkit::AbortLoss loss = co_await actors.git.read(&gitkit::abortLoss, now, gitDirectory);
        if (step == Step::skip)
            loss.steps = 0; // they stay
        if (!loss.isNothing())
            question.message = lossText(loss, now.kind);
        if (!loss.paths.empty())
            question.detail = OperationTexts::tr("The files are kept: Undo brings them back where they still fit.");
    } catch (const std::exception& thrown) {
        question.message =
            OperationTexts::tr("What would be lost cannot be found out: %1").arg(failureOf(thrown).message);
    }
    if (question.message.isEmpty())
        question.risk = Confirmation::Risk::none;
    question.message = QStringList{why, question.message}.join(u' ').trimmed();
    if (question.message.isEmpty()) {
        takeStep(actors, now, step);
        co_return;
    }
    question.title =
        step == Step::skip ? OperationTexts::tr("Skip this commit?") : operationWords::abortQuestion(now.kind);
    question.actionTitle = step == Step::skip ? OperationTexts::tr("Skip") : OperationTexts::tr("Abort");
    question.action = [actors, now, step] { takeStep(actors, now, step); };
    actors.window.ask(std::move(question));
}

const std::optional<OperationInProgress>& operationOf(const Actors& actors)
{
    return actors.snapshot.inProgress.value();
}

void continueWith(Actors actors, gitkit::CommitHooks hooks);

/// Returns whether it has offered a way on. What the user typed stays in the box.
bool offersWayOn(Actors actors, const OperationInProgress& now, const Failure& failure, bool hasOwnMessage)
{
    if (offersSkip(actors, now, failure))
        return true;
    if (failure.kind == gitkit::ErrorKind::notCommitted) {
        actors.window.report(failure, {{OperationTexts::tr("Show the Changes"),
                                        [actors] { actors.window.select(SidebarItem::workingCopy()); }}});
        return true;
    }
    if (failure.kind != gitkit::ErrorKind::rejectedByHook)
        return false;
    const QString without =
        hasOwnMessage ? OperationTexts::tr("Commit Without Hooks") : OperationTexts::tr("Continue Without Hooks");
    actors.window.report(
        failure, {{without, [actors] { continueWith(actors, gitkit::CommitHooks::skip); }},
                  {OperationTexts::tr("Run Again"), [actors] { continueWith(actors, gitkit::CommitHooks::run); }}});
    return true;
}

void continueWith(Actors actors, gitkit::CommitHooks hooks)
{
    const std::optional<std::filesystem::path>& directory = actors.snapshot.gitDirectory();
    if (!canContinueOperation(actors) || !directory)
        return;
    CommitDraft& draft = actors.draft;
    draft.cancelCommitMessage();
    const OperationInProgress now = *operationOf(actors);
    std::optional<OwnMessage> message;
    // git has the prepared message itself, and the author of a patch too.
    if (!draft.ownText().subject.trimmed().isEmpty() && !draft.holdsPreparedMessage() && !now.appliesPatches)
        message = OwnMessage{draft.message(), draft.amend.value() ? CommitMode::amend : CommitMode::create};
    const auto recorded = std::make_shared<std::atomic_bool>(false);
    const auto emptyWhatWasRecorded = [&draft, recorded, text = draft.text()] {
        if (*recorded)
            draft.recorded(text);
    };
    actors.changes.run({.verb = Verb::continueOperation,
                        .title = operationWords::continuing(now.kind),
                        .operation =
                            [now, message, recorded, hooks, directory = *directory](const GitRepository& repo) {
                                if (!message || commitFirst(repo, now, *message, directory, hooks, *recorded))
                                    gitkit::proceed(repo, now, Step::proceed, hooks);
                            },
                        .undo = undoable::operation(now.kind, Step::proceed),
                        .succeeded = emptyWhatWasRecorded,
                        .failed =
                            [emptyWhatWasRecorded, actors, now, isOwn = message.has_value()](const Failure& failure) {
                                emptyWhatWasRecorded();
                                return offersWayOn(actors, now, failure, isOwn);
                            }});
}

} // namespace

bool canContinueOperation(const Actors& actors)
{
    const std::optional<OperationInProgress>& now = operationOf(actors);
    return now && now->canContinue() && actors.snapshot.conflictCount() == 0 &&
           actors.changes.offers(Verb::continueOperation);
}

void continueOperation(Actors actors) { continueWith(actors, gitkit::CommitHooks::run); }

void skipOperation(Actors actors)
{
    const std::optional<OperationInProgress>& now = operationOf(actors);
    const std::optional<std::filesystem::path>& directory = actors.snapshot.gitDirectory();
    if (now && directory && now->canSkip() && actors.changes.offers(Verb::skipStep))
        launch(steppingAfterCheck(actors, *now, *directory, Step::skip));
}

void askToSkip(Actors actors, const QString& sentence)
{
    Confirmation question;
    question.title = OperationTexts::tr("Skip this commit?");
    question.message = sentence;
    question.actionTitle = OperationTexts::tr("Skip");
    question.risk = Confirmation::Risk::none;
    question.action = [actors] { skipOperation(actors); };
    actors.window.ask(std::move(question));
}

void abortOperation(Actors actors)
{
    const std::optional<OperationInProgress>& now = operationOf(actors);
    const std::optional<std::filesystem::path>& directory = actors.snapshot.gitDirectory();
    if (!now || !directory || !actors.changes.offers(Verb::endOperation))
        return;
    if (now->kind == Kind::bisect)
        resetBisect(actors);
    else
        launch(steppingAfterCheck(actors, *now, *directory, Step::abort));
}

void bisect(Actors actors, gitkit::BisectMark mark)
{
    const std::optional<OperationInProgress>& operation = operationOf(actors);
    if (!operation || !operation->bisect)
        return;
    const gitkit::BisectProgress now = *operation->bisect;
    const std::string& term = mark == gitkit::BisectMark::good ? now.good : now.bad;
    actors.changes.run({.verb = Verb::markBisect,
                        .title = mark == gitkit::BisectMark::skip
                                     ? OperationTexts::tr("Skipping commit…")
                                     : OperationTexts::tr("Marking commit as %1…").arg(shownText(term)),
                        .operation = [now, mark](const GitRepository& repo) { gitkit::mark(repo, now, mark); },
                        .undo = undoable::markBisect()});
}

void resetBisect(Actors actors)
{
    const std::optional<OperationInProgress>& now = operationOf(actors);
    if (now && now->kind == Kind::bisect)
        endOperation(actors, *now, Step::abort);
}

} // namespace plovik::actions
