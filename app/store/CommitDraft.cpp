// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/CommitDraft.h"

#include "GitKit/repository/CommitTemplate.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Identity.h"
#include "app/store/Changes.h"
#include "app/store/Obstacles.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/Undo.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"
#include "app/store/readers/RepositoryState.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

using gitkit::CommitMode;
using gitkit::GitRepository;

namespace {

bool isSpaceOrTab(QChar character) { return character == u' ' || character == u'\t'; }

CommitDraft::Text split(const QString& message)
{
    const qsizetype end = message.indexOf(u'\n');
    return {end < 0 ? message : message.left(end), end < 0 ? QString() : message.mid(end + 1).trimmed()};
}

CommitDraft::Text withoutMargins(const CommitDraft::Text& text)
{
    return {text.subject.trimmed(), text.body.trimmed()};
}

} // namespace

CommitDraft::CommitDraft(const GitAccess& git, WindowState& window, Snapshot& snapshot, Changes& changes, Undo& undo,
                         MessageWriter writer)
    : git_(git), window_(window), snapshot_(snapshot), changes_(changes), writing_{std::move(writer)}
{
    undo.whenTakenBack([this](const gitkit::UndoStep& step, bool isUndone) { takenBack(step, isUndone); });
    snapshot_.follow({.operationRead =
                          [this](const RepositoryState& read) {
                              if (read.newMessage)
                                  showPrepared(exactText(*read.newMessage));
                          },
                      .afterStatus = [this] { statusRead(); },
                      .afterListings = [this] { return readingTemplate(); }});
}

CommitDraft::~CommitDraft() { writing_.stop.request_stop(); }

void CommitDraft::setSubject(const QString& subject) { setText({subject, commitBody.value()}); }

void CommitDraft::setBody(const QString& body) { setText({commitSubject.value(), body}); }

void CommitDraft::setText(const Text& text)
{
    commitSubject = text.subject;
    commitBody = text.body;
    updateMessageUndo();
}

void CommitDraft::setAmend(bool amends)
{
    amend = amends;
    if (ownText() != Text{})
        return;
    if (amends)
        launch(fillingAmended());
    else
        setText(template_);
}

QCoro::Task<> CommitDraft::fillingAmended()
{
    std::string message;
    try {
        message = co_await git_.read(&GitRepository::lastCommitMessage);
    } catch (const std::exception&) {
        co_return; // the user can still type a message
    }
    if (!amend.value() || ownText() != Text{})
        co_return;
    fillCommitFields(exactText(message));
    amended_ = Amended{message, text()};
}

void CommitDraft::fillCommitFields(const QString& message) { setText(split(message)); }

void CommitDraft::empty()
{
    amended_.reset();
    setText(template_);
    amend = false;
}

void CommitDraft::recorded(const Text& recordedText)
{
    if (text() == recordedText) {
        empty();
        return;
    }
    amended_.reset();
    amend = false;
}

/// The message of a commit that was undone returns, unless something is typed; and it goes when that is done again.
void CommitDraft::takenBack(const gitkit::UndoStep& commit, bool isUndone)
{
    if (commit.message.empty())
        return;
    const Text message = split(exactText(commit.message));
    if (!isUndone) {
        recorded(message);
        return;
    }
    if (ownText() != Text{})
        return;
    setText(message);
    amend = commit.kind == "amend";
}

void CommitDraft::restore(const Text& text, bool amends, const std::string& head)
{
    setText(text);
    restored_ = Restored{text, amends, head};
}

void CommitDraft::statusRead()
{
    if (!restored_ || snapshot_.generation.value() == 0)
        return;
    const Restored restored = *std::exchange(restored_, std::nullopt);
    const std::string head = snapshot_.status.value().oid.value_or(std::string());
    if (text() != restored.text || text() == Text{})
        return;
    if (head != restored.head)
        launch(droppingIfRecorded(restored.text));
    else if (restored.amends)
        setAmend(true);
}

/// Drops a message that HEAD has: its commit ended after its window had closed.
QCoro::Task<> CommitDraft::droppingIfRecorded(Text recordedText)
{
    std::string last;
    try {
        last = co_await git_.read(&GitRepository::lastCommitMessage);
    } catch (const std::exception&) {
        co_return; // a message too many is better than one too few
    }
    if (text() == recordedText && exactText(last).trimmed() == exactText(message()).trimmed())
        empty();
}

void CommitDraft::showPrepared(const QString& message)
{
    if (holdsPreparedMessage())
        empty();
    prepared_.reset();
    if (message.trimmed().isEmpty() || amend.value() || ownText() != Text{})
        return;
    fillCommitFields(message);
    prepared_ = text();
}

/// Fills the commit box with a template that is new. A box that the user has emptied stays empty.
QCoro::Task<> CommitDraft::readingTemplate()
{
    std::string message;
    try {
        message = co_await git_.read(&gitkit::commitTemplate);
    } catch (const std::exception&) {
        co_return; // the user can still type a message
    }
    const bool isUntouched = ownText() == Text{} && (text() != Text{} || template_ == Text{});
    template_ = split(exactText(message));
    if (isUntouched && !amend.value())
        setText(template_);
}

bool CommitDraft::holdsTemplate() const
{
    return template_ != Text{} && withoutMargins(text()) == withoutMargins(template_);
}

bool CommitDraft::canCommit() const
{
    const QString& subject = commitSubject.value();
    const bool hasSubject = !std::all_of(subject.begin(), subject.end(), isSpaceOrTab);
    const bool hasSomething = snapshot_.status.value().stagedCount() >= 1 || amend.value();
    const bool isEdited = amend.value() || !holdsTemplate();
    return hasSubject && hasSomething && isEdited &&
           obstacle(changes_, snapshot_, amend.value() ? Verb::amend : Verb::commit).isEmpty();
}

std::string CommitDraft::message() const
{
    if (amend.value() && amended_ && amended_->text == text())
        return amended_->bytes;
    const QString subject = commitSubject.value().trimmed();
    const QString body = commitBody.value().trimmed();
    return (body.isEmpty() ? subject : subject + u"\n\n"_s + body).toStdString();
}

void CommitDraft::commit(gitkit::CommitHooks hooks) { commitAfter({}, hooks); }

void CommitDraft::commitAs(const gitkit::Identity& identity, gitkit::IdentityPlace place)
{
    commitAfter([identity, place](const GitRepository& repo) { gitkit::setIdentity(repo, identity, place); },
                gitkit::CommitHooks::run);
}

void CommitDraft::commitAfter(const GitAccess::Operation& preparation, gitkit::CommitHooks hooks)
{
    if (!canCommit())
        return;
    cancelCommitMessage(); // a generated message would come too late for this commit
    const CommitMode mode = amend.value() ? CommitMode::amend : CommitMode::create;
    changes_.run({.verb = amend.value() ? Verb::amend : Verb::commit,
                  .title = amend.value() ? tr("Amending…") : tr("Committing…"),
                  .operation =
                      [preparation, text = message(), mode, hooks](const GitRepository& repo) {
                          if (preparation)
                              preparation(repo);
                          repo.commit(text, mode, hooks);
                      },
                  .undo = amend.value() ? undoable::amend(message()) : undoable::commit(message()),
                  .succeeded = [this, text = text()] { recorded(text); },
                  .failed = [this](const Failure& failure) { return offersWayOn(failure); }});
}

QCoro::Task<> CommitDraft::askingWhoCommits()
{
    gitkit::Identity known;
    try {
        known = co_await git_.read(&gitkit::identityNow);
    } catch (const std::exception&) {
        known = {};
    }
    window_.showSheet(IdentitySheet{known});
}

/// The message stays in the box, so that the next try takes what it holds then.
bool CommitDraft::offersWayOn(const Failure& failure)
{
    switch (failure.kind) {
    case gitkit::ErrorKind::nothingToDo:
        window_.tell(tr("There is nothing to commit."));
        return true;
    case gitkit::ErrorKind::identityUnknown:
        launch(askingWhoCommits());
        return true;
    case gitkit::ErrorKind::rejectedByHook:
        window_.report(failure, {{tr("Commit Without Hooks"), [this] { commit(gitkit::CommitHooks::skip); }},
                                 {tr("Run Again"), [this] { commit(); }}});
        return true;
    default:
        return false;
    }
}

QCoro::Task<QString> CommitDraft::writingMessage(std::stop_token stop)
{
    const std::weak_ptr alive(git_.alive());
    const auto write = writing_.writer.write;
    gitkit::StagedChanges changes = co_await git_.read(&GitRepository::stagedChanges);
    QString message;
    if (!stop.stop_requested() && write)
        message = co_await write(std::move(changes), std::move(stop));
    if (alive.expired())
        throw OwnerGone{};
    co_return message;
}

QCoro::Task<bool> CommitDraft::generateCommitMessage()
{
    if (generatingMessage.value() || snapshot_.status.value().stagedCount() < 1 || !writing_.writer.write)
        co_return false;
    writing_.stop = std::stop_source();
    generatingMessage = true;
    const std::weak_ptr alive(git_.alive());
    const std::stop_token stop = writing_.stop.get_token();
    std::optional<Failure> failure;
    QString message;
    try {
        message = co_await writingMessage(stop);
    } catch (const std::exception& thrown) {
        failure = failureOf(thrown);
    }
    // A failure may also arrive after the store has been destroyed.
    if (alive.expired())
        throw OwnerGone{};
    // cancelCommitMessage() has reset the state already, and another message may be under way.
    if (stop.stop_requested())
        co_return false;
    if (failure)
        window_.report(*failure);
    else
        useMessage(message);
    generatingMessage = false;
    co_return !failure;
}

void CommitDraft::cancelCommitMessage()
{
    if (!generatingMessage.value())
        return;
    generatingMessage = false;
    writing_.stop.request_stop();
}

QCoro::Task<MessageRequest> CommitDraft::commitMessageRequest()
{
    const auto describe = writing_.writer.describe;
    const gitkit::StagedChanges changes = co_await git_.read(&GitRepository::stagedChanges);
    co_return describe ? describe(changes) : MessageRequest{};
}

void CommitDraft::useMessage(const QString& message)
{
    const Text before = text();
    writing_.written.reset();
    fillCommitFields(message);
    writing_.written = Written{before, text()};
    updateMessageUndo();
}

void CommitDraft::updateMessageUndo() { canUndoMessage = writing_.written && text() == writing_.written->after; }

void CommitDraft::undoMessage()
{
    if (canUndoMessage.value())
        setText(std::exchange(writing_.written, std::nullopt)->before);
}

} // namespace plovik
