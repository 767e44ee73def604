// SPDX-License-Identifier: GPL-3.0-or-later
// Commit messages that are written for the user.

#include "app/store/RepositoryStore.h"

#include <utility>

namespace plovik {

using gitkit::GitRepository;

QCoro::Task<QString> RepositoryStore::writtenMessage(std::stop_token stop)
{
    const std::weak_ptr alive(alive_);
    const auto write = services_.messages.write;
    gitkit::StagedChanges changes = co_await run(&GitRepository::stagedChanges);
    QString message;
    if (!stop.stop_requested() && write)
        message = co_await write(std::move(changes), std::move(stop));
    if (alive.expired())
        throw OwnerGone{};
    co_return message;
}

QCoro::Task<bool> RepositoryStore::generateCommitMessage()
{
    if (generatingMessage.value() || status.value().stagedCount() < 1 || !services_.messages.write)
        co_return false;
    generating_ = std::stop_source();
    generatingMessage = true;
    const std::weak_ptr alive(alive_);
    const std::stop_token stop = generating_.get_token();
    std::optional<QString> problem;
    QString message;
    try {
        message = co_await writtenMessage(stop);
    } catch (const std::exception& failure) {
        problem = QString::fromUtf8(failure.what());
    }
    // A failure, too, may come after the store.
    if (alive.expired())
        throw OwnerGone{};
    // Whoever cancelled has dealt with the rest, and may have begun anew.
    if (stop.stop_requested())
        co_return false;
    if (problem)
        fail(*problem);
    else
        fillWithWritten(message);
    generatingMessage = false;
    co_return !problem;
}

void RepositoryStore::cancelCommitMessage()
{
    if (!generatingMessage.value())
        return;
    generatingMessage = false;
    generating_.request_stop();
}

QCoro::Task<MessageRequest> RepositoryStore::commitMessageRequest()
{
    const auto describe = services_.messages.describe;
    const gitkit::StagedChanges changes = co_await run(&GitRepository::stagedChanges);
    co_return describe ? describe(changes) : MessageRequest{};
}

void RepositoryStore::fillWithWritten(const QString& message)
{
    const BoxText before = boxText();
    written_.reset();
    fillCommitFields(message);
    written_ = WrittenMessage{before, boxText()};
    updateMessageUndo();
}

void RepositoryStore::updateMessageUndo() { canUndoMessage = written_ && boxText() == written_->after; }

void RepositoryStore::undoMessage()
{
    if (!canUndoMessage.value())
        return;
    const BoxText before = std::exchange(written_, std::nullopt)->before;
    commitSubject = before.subject;
    commitBody = before.body;
    updateMessageUndo();
}

} // namespace plovik
