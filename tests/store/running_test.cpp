// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include "app/store/RepositoryStore.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <filesystem>
#include <future>
#include <thread>

namespace plovik {
namespace {

struct StoreRunning : testing::Test {
    TestRepository repo;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};

    void load()
    {
        store.refresh(RefreshScope::full);
        worker.finishAll();
    }

    void hook(const std::string& name, const std::string& script)
    {
        repo.write(".git/hooks/" + name, "#!/bin/sh\n" + script);
        std::filesystem::permissions(repo / (".git/hooks/" + name), std::filesystem::perms::owner_all);
    }

    void stageSomething()
    {
        repo.write("a", "1").commit("one").write("a", "2").git({"add", "a"});
        load();
        store.commitSubject = QStringLiteral("two");
    }

    CommandLog::Command newest(const std::string& verb) const
    {
        for (const CommandLog::Command& command : store.commandLog().commands()) {
            if (std::ranges::find(command.arguments, verb) != command.arguments.end())
                return command;
        }
        throw std::runtime_error("no " + verb + " in the log");
    }
};

TEST_F(StoreRunning, ACancelledActionEndsWithoutAWordAndKeepsTheMessage)
{
    stageSomething();
    hook("pre-commit", "touch started; exec sleep 60\n");
    const std::string head = repo.head();
    store.commit();
    auto running = std::async(std::launch::async, [this] { return worker.runOnly(); });
    while (!std::filesystem::exists(repo / "started"))
        std::this_thread::yield();
    store.cancelActivity();
    EXPECT_TRUE(store.isCancelling.value());
    running.get()();
    worker.finishAll();
    EXPECT_FALSE(store.activity.value() || store.errorMessage.value() || store.isCancelling.value());
    EXPECT_EQ(store.commitSubject.value(), QStringLiteral("two"));
    EXPECT_EQ(repo.head(), head);
    EXPECT_TRUE(newest("commit").end->stopped);

    // The next one is not cancelled with it.
    std::filesystem::remove(repo / ".git/hooks/pre-commit");
    store.commit();
    worker.finishAll();
    EXPECT_NE(repo.head(), head);
}

TEST_F(StoreRunning, TheLogHasEveryCommandWithWhatItPrinted)
{
    // More than anybody keeps; the beginning and the end tell.
    stageSomething();
    hook("pre-commit", "echo first\nseq 100000\necho last >&2\nexit 1\n");
    EXPECT_EQ(newest("status").end->status, 0);
    store.commit();
    worker.finishAll();
    const CommandLog::Command commit = newest("commit");
    EXPECT_EQ(commit.end->status, 1);
    EXPECT_EQ(store.failedCommand.value(), commit.number);
    const auto output = store.commandLog().output(commit.number);
    EXPECT_TRUE(output->beginning.starts_with("first\n1\n2\n"));
    EXPECT_TRUE(output->ending.ends_with("100000\nlast\n"));
    EXPECT_GT(output->leftOut, 400'000u);
    EXPECT_LT(output->beginning.size() + output->ending.size(), 100'000u);
    EXPECT_TRUE(store.errorMessage.value()->endsWith(QStringLiteral("100000\nlast"))); // whole
    EXPECT_TRUE(store.errorMessage.value()->startsWith(QStringLiteral("first\n1\n")));

    const qint64 before = store.commandLog().generation.value();
    QCoreApplication::processEvents();
    EXPECT_EQ(store.commandLog().generation.value(), before + 1); // one for all of it
    EXPECT_FALSE(store.commandLog().output(0));
}

} // namespace
} // namespace plovik
