// SPDX-License-Identifier: GPL-3.0-or-later
// Staging, discarding and committing.

#include "GitKit/PartialPatch.h"
#include "GitKit/repository/PartialDiscard.h"
#include "app/store/RepositoryStore.h"
#include "app/store/ShownText.h"
#include "app/store/readers/ConflictMarkers.h"

#include <algorithm>
#include <utility>

namespace plovik {

using gitkit::FileChange;
using gitkit::GitRepository;
using gitkit::StageState;

namespace {

QString quoted(const std::string& bytes) { return u'“' + shownText(bytes) + u'”'; }

bool isNew(const FileChange& file) { return file.index == '?' || file.index == 'A'; }

/// "“a.txt”", or "3 files".
QString objectText(const RepositoryStore::Files& files)
{
    return files.size() == 1 ? quoted(files.front().path) : QStringLiteral("%1 files").arg(files.size());
}

/// The same files as git has them now.
RepositoryStore::Files current(const GitRepository& repo, const RepositoryStore::Files& files)
{
    std::set<std::string> paths;
    for (const FileChange& file : files) {
        paths.insert(file.path);
        if (file.originalPath && (file.index == 'R' || file.worktree == 'R'))
            paths.insert(*file.originalPath);
    }
    RepositoryStore::Files found = repo.status().files;
    std::erase_if(found, [&paths](const FileChange& file) { return !paths.contains(file.path); });
    return found;
}

bool isBlank(QChar character) { return character == u' ' || character == u'\t'; }

} // namespace

void RepositoryStore::quick(Operation operation)
{
    ++stagingUnderWay_;
    launch(quickly(std::move(operation)));
}

QCoro::Task<> RepositoryStore::quickly(Operation operation)
{
    std::optional<QString> problem;
    const std::shared_ptr<ActionRuns> runs = actionRuns();
    gitkit::RunContext context{.listener = runs};
    const SignIns::Number signIn = signIns_.begin({}, services_.signIn, context);
    try {
        const Turnstile::Pass pass = co_await writing_.enter();
        co_await runOperation(Worker::Lane::local, context, std::move(operation));
    } catch (const std::exception& failure) {
        problem = QString::fromUtf8(failure.what());
    }
    signIns_.end(signIn);
    --stagingUnderWay_;
    ++finishedWrites_;
    if (problem)
        fail(*problem, runs->failed());
    refresh(RefreshScope::status);
}

RepositoryStore::Files RepositoryStore::selectedFiles() const
{
    Files selected;
    std::ranges::copy_if(status.value().files, std::back_inserter(selected),
                         [this](const FileChange& file) { return selectedPaths.value().contains(file.path); });
    return selected;
}

StageState RepositoryStore::shownStageState(const FileChange& file) const
{
    const auto underWay = shownStaging_.find(file.path);
    return underWay == shownStaging_.end() ? file.stageState() : underWay->second;
}

void RepositoryStore::showStaging(const Files& files, StageState state)
{
    for (const FileChange& file : files)
        shownStaging_[file.path] = state;
    stagingGeneration = stagingGeneration.value() + 1;
}

void RepositoryStore::forgetShownStaging()
{
    if (stagingUnderWay_ > 0 || shownStaging_.empty())
        return;
    shownStaging_.clear();
    stagingGeneration = stagingGeneration.value() + 1;
}

void RepositoryStore::stage(const Files& files)
{
    stageChecked(files, [files, isOld = isListOld()](const GitRepository& repo) {
        repo.stage(isOld ? current(repo, files) : files);
    });
}

void RepositoryStore::stageAll()
{
    stageChecked(status.value().files, [](const GitRepository& repo) { repo.stageAll(); });
}

void RepositoryStore::stageChecked(const Files& files, Operation operation)
{
    if (std::ranges::any_of(files, &FileChange::isConflicted))
        launch(stagingAfterMarkerCheck(files, std::move(operation)));
    else
        stageNow(files, std::move(operation));
}

void RepositoryStore::stageNow(const Files& files, Operation operation)
{
    showStaging(files, StageState::full);
    quick(std::move(operation));
}

QCoro::Task<> RepositoryStore::stagingAfterMarkerCheck(Files files, Operation operation)
{
    const std::vector<std::string> marked = co_await runFunction(filesWithConflictMarkers, files);
    if (marked.empty()) {
        stageNow(files, std::move(operation));
        co_return;
    }
    Confirmation question;
    question.title = marked.size() == 1
                         ? QStringLiteral("%1 still contains conflict markers").arg(quoted(marked.front()))
                         : QStringLiteral("%1 files still contain conflict markers").arg(marked.size());
    question.message = QStringLiteral("Staging marks the conflict as resolved, and the markers would be committed.");
    question.actionTitle = QStringLiteral("Stage Anyway");
    question.action = [this, files, operation = std::move(operation)] { stageNow(files, operation); };
    confirmation = std::optional(std::move(question));
}

void RepositoryStore::unstage(const Files& files)
{
    const bool isOld = isListOld();
    showStaging(files, StageState::none);
    quick([files, isOld](const GitRepository& repo) { repo.unstage(isOld ? current(repo, files) : files); });
}

void RepositoryStore::unstageAll()
{
    Files staged;
    std::ranges::copy_if(status.value().files, std::back_inserter(staged),
                         [](const FileChange& file) { return file.index != '?' && file.index != '.'; });
    if (!status.value().hasCommits()) {
        // There is no commit to reset to.
        if (!staged.empty())
            unstage(staged);
        return;
    }
    showStaging(staged, StageState::none);
    quick([](const GitRepository& repo) { repo.unstageAll(); });
}

void RepositoryStore::applyToIndex(const std::string& path, const gitkit::ParsedDiff& diff, const std::set<int>& lines,
                                   gitkit::PatchDirection direction)
{
    if (const auto change = gitkit::partialChange(path, diff, lines, direction))
        quick([change = *change](const GitRepository& repo) { repo.applyToIndex(change); });
}

void RepositoryStore::toggleStage(const FileChange& file)
{
    const Files files = selectedPaths.value().contains(file.path) ? selectedFiles() : Files{file};
    if (shownStageState(file) != StageState::full)
        stage(files);
    else
        unstage(files);
}

void RepositoryStore::toggleStageOfSelection()
{
    const Files files = selectedFiles();
    if (files.empty())
        return;
    const auto isStaged = [this](const FileChange& file) { return shownStageState(file) == StageState::full; };
    if (std::ranges::all_of(files, isStaged))
        unstage(files);
    else
        stage(files);
}

QString RepositoryStore::discardTitle(const Files& files)
{
    if (!std::ranges::all_of(files, isNew))
        return QStringLiteral("Discard Changes…");
    return files.size() == 1 ? QStringLiteral("Delete File…") : QStringLiteral("Delete Files…");
}

void RepositoryStore::confirmDiscard(const Files& files)
{
    if (files.empty())
        return;
    Confirmation question;
    if (std::ranges::all_of(files, isNew)) {
        question.title = QStringLiteral("Delete %1?").arg(objectText(files));
        question.message = files.size() == 1 ? QStringLiteral("The file is moved to the Trash.")
                                             : QStringLiteral("The files are moved to the Trash.");
        question.actionTitle = QStringLiteral("Delete");
    } else {
        question.title = QStringLiteral("Discard changes in %1?").arg(objectText(files));
        question.message = std::ranges::any_of(files, isNew)
                               ? QStringLiteral("Local modifications are lost. New files are moved to the Trash.")
                               : QStringLiteral("Local modifications are lost.");
        question.actionTitle = QStringLiteral("Discard");
    }
    question.action = [this, files] {
        quick([files, trash = services_.trash](const GitRepository& repo) { repo.discard(files, trash); });
    };
    confirmation = std::optional(std::move(question));
}

void RepositoryStore::confirmDiscardPart(const std::string& path, const gitkit::ParsedDiff& diff,
                                         const std::set<int>& lines, DiscardedPart part)
{
    auto change = gitkit::partialChange(path, diff, lines, gitkit::PatchDirection::reverse);
    if (!change)
        return;
    Confirmation question;
    question.title = (part == DiscardedPart::hunk ? QStringLiteral("Discard this hunk of %1?")
                                                  : QStringLiteral("Discard the selected lines of %1?"))
                         .arg(quoted(path));
    question.message = QStringLiteral("You can undo this as long as the file does not change again.");
    question.actionTitle = QStringLiteral("Discard");
    question.action = [this, change = std::move(*change)] { launch(discardingPart(change)); };
    confirmation = std::optional(std::move(question));
}

QCoro::Task<> RepositoryStore::discardingPart(gitkit::PartialChange change)
{
    std::optional<QString> problem;
    try {
        const Turnstile::Pass pass = co_await writing_.enter();
        lastDiscard_ = co_await run(&gitkit::discardPart, change);
        canUndoDiscard = lastDiscard_.has_value();
    } catch (const std::exception& failure) {
        problem = QString::fromUtf8(failure.what());
    }
    if (problem)
        fail(*problem);
    refresh(RefreshScope::status);
}

void RepositoryStore::undoDiscard()
{
    const std::optional<gitkit::PartialDiscard> discard = std::exchange(lastDiscard_, std::nullopt);
    canUndoDiscard = false;
    if (discard)
        quick([discard = *discard](const GitRepository& repo) { gitkit::undoDiscard(repo, discard); });
}

bool RepositoryStore::canCommit() const
{
    const QString& subject = commitSubject.value();
    const bool hasSubject = !std::all_of(subject.begin(), subject.end(), isBlank);
    return hasSubject && (status.value().stagedCount() >= 1 || amend.value()) && !activity.value();
}

std::string RepositoryStore::commitMessage() const
{
    // An amended message that was not touched stays what it is, to the byte.
    if (amend.value() && amended_ && amended_->subject == commitSubject.value() && amended_->body == commitBody.value())
        return amended_->bytes;
    const QString subject = commitSubject.value().trimmed();
    const QString body = commitBody.value().trimmed();
    return (body.isEmpty() ? subject : subject + QStringLiteral("\n\n") + body).toStdString();
}

void RepositoryStore::commit()
{
    if (!canCommit())
        return;
    cancelCommitMessage(); // for what is being committed it would come too late
    const bool amends = amend.value();
    Action action;
    action.title = amends ? QStringLiteral("Amending…") : QStringLiteral("Committing…");
    action.operation = [message = commitMessage(), amends](const GitRepository& repo) {
        repo.commit(message, amends ? gitkit::CommitMode::amend : gitkit::CommitMode::create);
    };
    action.succeeded = [this] { emptyCommitBox(); };
    perform(std::move(action));
}

void RepositoryStore::amendChanged()
{
    if (amend.value() && commitSubject.value().isEmpty() && commitBody.value().isEmpty())
        launch(fillingAmendedMessage());
}

QCoro::Task<> RepositoryStore::fillingAmendedMessage()
{
    std::string message;
    try {
        message = co_await run(&GitRepository::lastCommitMessage);
    } catch (const std::exception&) {
        co_return; // the box stays as it is, to be typed into
    }
    if (!amend.value() || !commitSubject.value().isEmpty())
        co_return;
    fillCommitFields(shownText(message));
    amended_ = AmendedMessage{message, commitSubject.value(), commitBody.value()};
}

void RepositoryStore::fillCommitFields(const QString& message)
{
    const qsizetype end = message.indexOf(u'\n');
    commitSubject = end < 0 ? message : message.left(end);
    commitBody = end < 0 ? QString() : message.mid(end + 1).trimmed();
}

} // namespace plovik
