// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include "app/store/RepositoryStore.h"

#include <gtest/gtest.h>

namespace plovik {
namespace {

/// A writer whose message comes, or fails, when the test says so.
class ManualWriter {
public:
    MessageWriter writer()
    {
        return {.write = [this](MessageWriter::Changes changes,
                                std::stop_token stop) { return write(std::move(changes), std::move(stop)); },
                .describe =
                    [](const MessageWriter::Changes& changes) {
                        return MessageRequest{.changes = QString::fromStdString(changes.diff)};
                    }};
    }

    struct Call {
        MessageWriter::Changes changes;
        std::stop_token stop;
        std::coroutine_handle<> waiting;
        std::optional<QString> message; ///< it fails without
    };
    std::vector<std::shared_ptr<Call>> calls;

    void answer(std::size_t index, std::optional<QString> message)
    {
        calls[index]->message = std::move(message);
        std::exchange(calls[index]->waiting, nullptr).resume();
    }

private:
    struct Answer {
        std::shared_ptr<Call> call;
        static bool await_ready() noexcept { return false; }
        void await_suspend(std::coroutine_handle<> handle) const { call->waiting = handle; }
        QString await_resume() const
        {
            if (!call->message)
                throw std::runtime_error("no message today");
            return *call->message;
        }
    };

    QCoro::Task<QString> write(MessageWriter::Changes changes, std::stop_token stop)
    {
        const auto call = std::make_shared<Call>(Call{std::move(changes), std::move(stop), nullptr, std::nullopt});
        calls.push_back(call);
        // As a request does that is aborted: it ends at once, wherever it was stopped from.
        const std::stop_callback stopping(call->stop, [call] {
            if (call->waiting)
                std::exchange(call->waiting, nullptr).resume();
        });
        co_return co_await Answer{call};
    }
};

struct StoreMessage : testing::Test {
    TestRepository repo;
    ManualWorker worker;
    ManualWriter writer;
    std::unique_ptr<RepositoryStore> store;
    std::optional<bool> filled;

    void SetUp() override
    {
        repo.write("a", "one\n").commit("first");
        repo.write("a", "two\n").git({"add", "a"});
        store = std::make_unique<RepositoryStore>(repo.path(), worker, StoreServices{.messages = writer.writer()});
        store->snapshot().refresh(RefreshScope::full);
        worker.finishAll();
    }

    QCoro::Task<> generating() { filled = co_await store->draft().generateCommitMessage(); }
    void generate()
    {
        filled.reset();
        launch(generating());
    }

    std::string box() const
    {
        return (store->draft().commitSubject.value() + u'|' + store->draft().commitBody.value()).toStdString();
    }
};

TEST_F(StoreMessage, FillsTheBoxAndGivesBackWhatStoodThere)
{
    store->draft().setSubject(QStringLiteral("mine"));
    store->draft().setBody(QStringLiteral("typed"));
    generate();
    EXPECT_TRUE(store->draft().generatingMessage.value());
    generate();
    EXPECT_EQ(filled, false); // one at a time
    worker.finishAll();
    ASSERT_EQ(writer.calls.size(), 1u);
    EXPECT_NE(writer.calls[0]->changes.diff.find("+two"), std::string::npos);
    EXPECT_NE(writer.calls[0]->changes.summary.find("a | 2 +-"), std::string::npos);

    writer.answer(0, QStringLiteral("Count on\n\nTwo is more.\n"));
    EXPECT_EQ(filled, true);
    EXPECT_EQ(box(), "Count on|Two is more.");
    EXPECT_FALSE(store->draft().generatingMessage.value());
    EXPECT_TRUE(store->draft().canUndoMessage.value());

    store->draft().setBody(QStringLiteral("Two is more!"));
    EXPECT_FALSE(store->draft().canUndoMessage.value()); // the texts undo their own changes first
    store->draft().setBody(QStringLiteral("Two is more."));
    store->draft().undoMessage();
    EXPECT_EQ(box(), "mine|typed");
    EXPECT_FALSE(store->draft().canUndoMessage.value());
}

TEST_F(StoreMessage, LeavesTheBoxAloneWhenThereIsNone)
{
    store->draft().setSubject(QStringLiteral("mine"));
    generate();
    worker.finishAll();
    writer.answer(0, std::nullopt);
    EXPECT_EQ(filled, false);
    EXPECT_EQ(store->window().errorMessage.value(), QStringLiteral("no message today"));
    EXPECT_EQ(box(), "mine|");
    EXPECT_FALSE(store->draft().generatingMessage.value());

    repo.git({"reset", "-q"});
    store->snapshot().refresh(RefreshScope::full);
    worker.finishAll();
    generate(); // nothing is staged
    EXPECT_EQ(filled, false);
    EXPECT_EQ(writer.calls.size(), 1u);
}

TEST_F(StoreMessage, CancelsWithoutAWord)
{
    store->draft().setSubject(QStringLiteral("mine"));
    generate();
    worker.finishAll();
    store->draft().cancelCommitMessage();
    EXPECT_EQ(filled, false);
    EXPECT_FALSE(store->draft().generatingMessage.value());
    EXPECT_FALSE(store->window().errorMessage.value());

    generate(); // while git is still at it
    store->draft().cancelCommitMessage();
    generate();
    worker.finishAll();
    ASSERT_EQ(writer.calls.size(), 2u);
    writer.answer(1, QStringLiteral("Second"));
    EXPECT_EQ(filled, true);
    EXPECT_EQ(box(), "Second|");

    store->draft().setAmend(false);
    generate();
    worker.finishAll();
    store->draft().commit(); // with the message that is there
    EXPECT_TRUE(writer.calls[2]->stop.stop_requested());
    worker.finishAll();
    EXPECT_EQ(repo.repository().lastCommitMessage(), "Second\n");
    EXPECT_EQ(box(), "|");
}

TEST_F(StoreMessage, UnwindsWhenItsWindowCloses)
{
    generate();
    worker.finishAll();
    store.reset(); // stopped in mid-air
    EXPECT_FALSE(filled);
}

} // namespace
} // namespace plovik
