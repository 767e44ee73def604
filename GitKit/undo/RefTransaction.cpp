// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/RefTransaction.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"

#include <chrono>
#include <exception>

namespace gitkit {

namespace {

/// A git that takes longer to give its locks back is killed.
constexpr std::chrono::seconds longestEnd{5};

/// Returns a command of `update-ref --stdin -z`. An empty value stands for a ref that does not exist.
std::string commandFor(const RefUpdate& update)
{
    const char zero = '\0';
    const std::string from = update.from.value_or(std::string());
    if (!update.to)
        return "delete " + update.name + zero + from + zero;
    if (!update.from)
        return "create " + update.name + zero + *update.to + zero;
    return "update " + update.name + zero + *update.to + zero + from + zero;
}

} // namespace

RefTransaction::RefTransaction(const GitRepository& repo, const std::string& reason,
                               const std::vector<RefUpdate>& updates)
{
    if (updates.empty())
        return;
    git_.emplace(
        repo.runner().dialogue({"update-ref", "--no-deref", "--create-reflog", "-m", reason, "--stdin", "-z"}));
    const char zero = '\0';
    std::string commands = std::string("start") + zero;
    for (const RefUpdate& update : updates)
        commands += commandFor(update);
    git_->write(commands + "prepare" + zero);
    await("prepare: ok\n");
}

RefTransaction::~RefTransaction()
{
    if (!git_)
        return;
    // At the end of its input git takes everything back. One that was killed would leave its locks.
    const auto until = GitStream::Clock::now() + longestEnd;
    try {
        git_->endInput();
        while (GitStream::Clock::now() < until && git_->read(heard_, until)) {
        }
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): it has ended
    }
}

void RefTransaction::commit()
{
    if (!git_)
        return;
    git_->write(std::string("commit") + '\0');
    git_->endInput();
    await("commit: ok\n");
    while (git_->read(heard_)) {
    }
    git_.reset();
}

/// Waits until git has said so. Throws when it ends before.
void RefTransaction::await(const std::string& answer)
{
    while (heard_.find(answer) == std::string::npos) {
        if (!git_->read(heard_))
            throw GitError("update-ref", 1, "Git ended before it had moved the refs.");
    }
}

} // namespace gitkit
