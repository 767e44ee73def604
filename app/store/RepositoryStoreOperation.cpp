// SPDX-License-Identifier: GPL-3.0-or-later
// Going on or back from where git stopped.

#include "GitKit/repository/Folders.h"
#include "GitKit/repository/Operations.h"
#include "app/store/RepositoryStore.h"
#include "app/store/ShownText.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <utility>

namespace plovik {

using gitkit::FileChange;
using gitkit::GitRepository;
using gitkit::OperationInProgress;
using Kind = OperationInProgress::Kind;
using Step = gitkit::OperationStep;

namespace {

constexpr std::size_t mostNames = 3;

/// What the user typed for the commit that continuing makes.
struct OwnMessage {
    std::string text;
    gitkit::CommitMode mode = gitkit::CommitMode::create;
};

/// Whether the message was recorded; git may fail after that. Written on the worker, read once it has ended.
using Recorded = std::shared_ptr<std::atomic_bool>;

QString noun(Kind kind)
{
    switch (kind) {
    case Kind::merge:
        return QStringLiteral("merge");
    case Kind::rebase:
        return QStringLiteral("rebase");
    case Kind::applyPatches:
        return QStringLiteral("patch series");
    case Kind::cherryPick:
        return QStringLiteral("cherry-pick");
    case Kind::revert:
        return QStringLiteral("revert");
    case Kind::bisect:
        break;
    }
    return QStringLiteral("bisect");
}

QString activityText(const QString& verb, Kind kind) { return verb + u' ' + noun(kind) + u'…'; }

/// Records the typed message where there is something to record; whether the operation goes on from there.
bool commitFirst(const GitRepository& repo, const OperationInProgress& operation, OwnMessage message,
                 const std::filesystem::path& gitDirectory, std::atomic_bool& recorded)
{
    const gitkit::RepoStatus now = repo.status();
    if (message.mode == gitkit::CommitMode::create && now.stagedCount() == 0 && operation.kind != Kind::merge)
        return true;
    // Only as an amendment does the stopped step stay a part of the commit before it.
    if (operation.meldsInto && operation.meldsInto == now.oid)
        message.mode = gitkit::CommitMode::amend;
    repo.commit(message.text, message.mode);
    recorded = true;
    const std::optional<OperationInProgress> left = gitkit::operationInProgress(repo, gitDirectory);
    return left && left->kind == operation.kind;
}

QString filesText(const std::vector<std::string>& paths)
{
    QStringList names;
    for (std::size_t index = 0; index < std::min(paths.size(), mostNames); ++index)
        names.append(u'“' + shownText(paths[index]) + u'”');
    const std::size_t more = paths.size() - static_cast<std::size_t>(names.size());
    if (more > 0)
        return names.join(QStringLiteral(", ")) +
               (more == 1 ? QStringLiteral(" and 1 more file") : QStringLiteral(" and %1 more files").arg(more));
    const QString last = names.takeLast();
    return names.isEmpty() ? last : names.join(QStringLiteral(", ")) + QStringLiteral(" and ") + last;
}

QString lossText(const gitkit::AbortLoss& loss, Kind kind)
{
    QStringList sentences;
    if (!loss.paths.empty())
        sentences.append(
            QStringLiteral("What was resolved or changed in %1 since git stopped is lost.").arg(filesText(loss.paths)));
    if (loss.steps == 1)
        sentences.append(QStringLiteral("The step of the %1 that was already done is undone.").arg(noun(kind)));
    else if (loss.steps > 1)
        sentences.append(QStringLiteral("The %1 steps of the %2 that were already done are undone.")
                             .arg(loss.steps)
                             .arg(noun(kind)));
    sentences.append(QStringLiteral("Untracked files stay."));
    return sentences.join(u' ');
}

} // namespace

std::ptrdiff_t RepositoryStore::conflictCount() const
{
    return std::ranges::count_if(status.value().files, &FileChange::isConflicted);
}

bool RepositoryStore::canContinueOperation() const
{
    return inProgress.value() && inProgress.value()->canContinue() && conflictCount() == 0 && !activity.value();
}

void RepositoryStore::applyOperation(const RepositoryState& read)
{
    gitDirectory_ = read.gitDirectory ? read.gitDirectory : gitDirectory_;
    inProgress = read.operation;
    preparedBytes_ = read.preparedMessage;
    if (read.newMessage)
        showPrepared(shownText(*read.newMessage));
}

void RepositoryStore::showPrepared(const QString& message)
{
    if (holdsPreparedMessage())
        emptyCommitBox();
    prepared_.reset();
    if (message.trimmed().isEmpty() || amend.value() || boxText() != BoxText{})
        return;
    fillCommitFields(message);
    prepared_ = boxText();
}

void RepositoryStore::emptyCommitBox()
{
    amended_.reset();
    commitSubject = QString();
    commitBody = QString();
    amend = false;
}

void RepositoryStore::continueOperation()
{
    if (!canContinueOperation() || !gitDirectory_)
        return;
    cancelCommitMessage();
    std::optional<OwnMessage> message;
    // Git itself has the prepared one, and of a patch the author too.
    if (!commitSubject.value().trimmed().isEmpty() && !holdsPreparedMessage() && !inProgress.value()->appliesPatches)
        message = OwnMessage{commitMessage(), amend.value() ? gitkit::CommitMode::amend : gitkit::CommitMode::create};
    const auto recorded = std::make_shared<std::atomic_bool>(false);
    Action action;
    action.title = activityText(QStringLiteral("Continuing"), inProgress.value()->kind);
    action.operation = [now = *inProgress.value(), message, recorded, directory = *gitDirectory_](const auto& repo) {
        if (!message || commitFirst(repo, now, *message, directory, *recorded))
            gitkit::proceed(repo, now, Step::proceed);
    };
    action.succeeded = [this, recorded] {
        if (*recorded)
            emptyCommitBox();
    };
    action.failed = [emptied = action.succeeded](const QString&, gitkit::ErrorKind) {
        emptied();
        return false;
    };
    perform(std::move(action));
}

void RepositoryStore::skipOperation()
{
    if (inProgress.value() && inProgress.value()->canSkip())
        perform({QStringLiteral("Skipping commit…"),
                 [now = *inProgress.value()](const GitRepository& repo) { gitkit::proceed(repo, now, Step::skip); }});
}

void RepositoryStore::abortOperation()
{
    if (!inProgress.value() || !gitDirectory_ || activity.value())
        return;
    if (inProgress.value()->kind == Kind::bisect)
        resetBisect();
    else
        launch(abortingAfterCheck(*inProgress.value()));
}

QCoro::Task<> RepositoryStore::abortingAfterCheck(OperationInProgress now)
{
    QString message;
    try {
        const gitkit::AbortLoss loss = co_await run(&gitkit::abortLoss, now, *gitDirectory_);
        if (!loss.isNothing())
            message = lossText(loss, now.kind);
    } catch (const std::exception& failure) {
        message = QStringLiteral("What would be lost cannot be found out: ") + QString::fromUtf8(failure.what());
    }
    if (message.isEmpty()) {
        endOperation(now, Step::abort);
        co_return;
    }
    Confirmation question;
    question.title = QStringLiteral("Abort the %1?").arg(noun(now.kind));
    question.message = message;
    question.actionTitle = QStringLiteral("Abort");
    question.action = [this, now] { endOperation(now, Step::abort); };
    confirmation = std::optional(std::move(question));
}

void RepositoryStore::endOperation(const OperationInProgress& now, Step step)
{
    const QString verb = now.kind == Kind::bisect ? QStringLiteral("Resetting") : QStringLiteral("Aborting");
    Action action{activityText(verb, now.kind),
                  [now, step](const GitRepository& repo) { gitkit::proceed(repo, now, step); }};
    // Git cannot go back with files that are missing, nor to a branch that is gone.
    if (step == Step::abort && (now.isIncomplete || now.kind == Kind::bisect))
        action.failed = [this, now](const QString& problem, gitkit::ErrorKind) {
            confirmForget(now, problem);
            return true;
        };
    perform(std::move(action));
}

void RepositoryStore::confirmForget(const OperationInProgress& now, const QString& problem)
{
    Confirmation question;
    question.title = QStringLiteral("Git cannot go back to where the %1 began").arg(noun(now.kind));
    question.message =
        problem +
        QStringLiteral("\n\nThe %1 can be ended here instead. Every file stays as it is.").arg(noun(now.kind));
    question.actionTitle = QStringLiteral("End Here");
    question.action = [this, now] { endOperation(now, Step::forget); };
    confirmation = std::optional(std::move(question));
}

void RepositoryStore::bisect(gitkit::BisectMark mark)
{
    if (!inProgress.value() || !inProgress.value()->bisect)
        return;
    const gitkit::BisectProgress now = *inProgress.value()->bisect;
    const std::string& term = mark == gitkit::BisectMark::good ? now.good : now.bad;
    const QString title = mark == gitkit::BisectMark::skip
                              ? QStringLiteral("Skipping commit…")
                              : QStringLiteral("Marking commit as %1…").arg(shownText(term));
    perform({title, [now, mark](const GitRepository& repo) { gitkit::mark(repo, now, mark); }});
}

void RepositoryStore::resetBisect()
{
    if (inProgress.value() && inProgress.value()->kind == Kind::bisect)
        endOperation(*inProgress.value(), Step::abort);
}

void RepositoryStore::takeSide(const Files& files, gitkit::ConflictSide side)
{
    std::vector<std::string> paths;
    for (const FileChange& file : files) {
        if (file.isConflicted)
            paths.push_back(file.path);
    }
    if (paths.empty())
        return;
    quick([paths, side, directory = gitDirectory_, trash = services_.trash](const GitRepository& repo) {
        gitkit::takeSide(repo, paths, side, directory ? *directory : gitkit::gitDirectories(repo).own, trash);
    });
}

} // namespace plovik
