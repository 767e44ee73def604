// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include "app/store/RepositoryStore.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace plovik {
namespace {

struct StoreRefresh : testing::Test {
    TestRepository repo;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};

    void load()
    {
        store.snapshot().refresh(RefreshScope::full);
        worker.finishAll();
    }
};

TEST_F(StoreRefresh, FirstFullPassFillsEverything)
{
    repo.write("a", "1").commit("one").git({"branch", "side"}).git({"tag", "v1"});
    repo.git({"remote", "add", "origin", "/nowhere"}).git({"update-ref", "refs/remotes/origin/main", "HEAD"});
    repo.write("a", "2").git({"stash", "push", "-m", "wip"}).write("b", "new");

    load();

    ASSERT_EQ(store.snapshot().status.value().files.size(), 1u);
    EXPECT_EQ(store.snapshot().status.value().files[0].path, "b");
    EXPECT_EQ(store.snapshot().branches.value().size(), 2u);
    EXPECT_EQ(store.snapshot().remoteBranches.value().at(0).name, "origin/main");
    EXPECT_EQ(store.snapshot().tags.value().at(0).name, "v1");
    EXPECT_EQ(store.snapshot().remotes.value(), std::vector<std::string>{"origin"});
    ASSERT_EQ(store.snapshot().stashes.value().size(), 1u);
    EXPECT_EQ(store.window().selectedStash.value(), store.snapshot().stashes.value()[0].hash);
    EXPECT_EQ(store.history().history.value().at(0).commit.subject, "one");
    EXPECT_TRUE(store.snapshot().hasLoaded.value());
    EXPECT_EQ(store.snapshot().readProblem.value(), QString());
    EXPECT_EQ(store.snapshot().headDescription(), QStringLiteral("main"));
}

TEST_F(StoreRefresh, AStatusThatTakesLongSaysWhatItWaitsFor)
{
    load();
    worker.advance(std::chrono::seconds(5));
    EXPECT_EQ(store.window().notice.value(), QString()) << "nothing is read";
    store.snapshot().refresh(RefreshScope::status);
    worker.advance(std::chrono::seconds(5));
    EXPECT_TRUE(store.window().notice.value().contains(QStringLiteral("filter")));
    worker.finishAll();
    EXPECT_EQ(store.window().notice.value(), QString());
}

TEST_F(StoreRefresh, RequestsDuringAPassMakeOneMoreThatIsFullIfAnyWas)
{
    repo.write("a", "1").commit("one");
    store.snapshot().refresh(RefreshScope::status);
    store.snapshot().refresh(RefreshScope::status);
    store.snapshot().refresh(RefreshScope::status);
    store.snapshot().refresh(RefreshScope::full);
    store.snapshot().refresh(RefreshScope::status);
    worker.finishAll();
    EXPECT_EQ(store.snapshot().generation.value(), 2);
    EXPECT_EQ(store.snapshot().branches.value().size(), 1u);

    const int posted = worker.posted();
    store.snapshot().refresh(RefreshScope::status);
    store.snapshot().refresh(RefreshScope::status);
    store.snapshot().refresh(RefreshScope::status);
    worker.finishAll();
    EXPECT_EQ(worker.posted() - posted, 2) << "two status reads and nothing else";
}

TEST_F(StoreRefresh, AnEqualStatusNotifiesNobodyButCountsAsAGeneration)
{
    repo.write("a", "1").commit("one").write("a", "2");
    load();
    int notified = 0;
    const auto notifier = store.snapshot().status.addNotifier([&] { ++notified; });
    store.snapshot().refresh(RefreshScope::status);
    worker.finishAll();
    EXPECT_EQ(notified, 0);
    EXPECT_EQ(store.snapshot().generation.value(), 2);
}

TEST_F(StoreRefresh, CleanedFilesLeaveTheSelection)
{
    repo.write("a", "1").write("b", "1").commit("one").write("a", "2").write("b", "2");
    load();
    store.window().selectPaths(std::set<std::string>{"a", "b"});
    repo.write("a", "1");
    store.snapshot().refresh(RefreshScope::status);
    worker.finishAll();
    EXPECT_EQ(store.window().selectedPaths.value(), std::set<std::string>{"b"});
}

TEST_F(StoreRefresh, ABranchDeletedElsewhereFallsBackToAllOfHistory)
{
    repo.write("a", "1").commit("one").git({"branch", "gone"});
    repo.write("a", "2").commit("two");
    load();
    store.window().select(SidebarItem::ref("refs/heads/gone"));
    worker.finishAll();
    ASSERT_EQ(store.history().history.value().size(), 1u);

    repo.git({"branch", "-D", "gone"});
    load();
    EXPECT_EQ(store.window().selection.value(), SidebarItem::history());
    EXPECT_EQ(store.history().history.value().size(), 2u) << "not the page of the branch that is gone";
    EXPECT_EQ(store.history().historyProblem.value(), QString());
}

TEST_F(StoreRefresh, DroppingTheSelectedStashSelectsTheFirstThatRemains)
{
    repo.write("a", "1").commit("one");
    repo.write("a", "2").git({"stash"}).write("a", "3").git({"stash"});
    load();
    store.window().selectStash(store.snapshot().stashes.value().at(1).hash);
    load();
    EXPECT_EQ(store.window().selectedStash.value(), store.snapshot().stashes.value().at(1).hash)
        << "a selection that stands is kept";

    repo.git({"stash", "drop", "stash@{1}"});
    load();
    EXPECT_EQ(store.window().selectedStash.value(), store.snapshot().stashes.value().at(0).hash);
    repo.git({"stash", "drop"});
    load();
    EXPECT_EQ(store.window().selectedStash.value(), std::nullopt);
}

TEST_F(StoreRefresh, AnUnreadableRepositoryKeepsWhatWasReadAndSaysWhy)
{
    repo.write("a", "1").commit("one").write("b", "2");
    load();
    const auto shown = store.snapshot().status.value();
    const qint64 generation = store.snapshot().generation.value();

    repo.write(".git/index", "this is no index");
    load();
    EXPECT_EQ(store.snapshot().status.value(), shown);
    EXPECT_EQ(store.snapshot().generation.value(), generation);
    EXPECT_TRUE(store.snapshot().readProblem.value().contains(QStringLiteral("index")))
        << store.snapshot().readProblem.value().toStdString();
    EXPECT_EQ(store.snapshot().branches.value().size(), 1u) << "the pass goes on after a failed status";

    std::filesystem::remove(repo.path() / ".git/index");
    store.snapshot().refresh(RefreshScope::status);
    worker.finishAll();
    EXPECT_EQ(store.snapshot().readProblem.value(), QString());
}

TEST_F(StoreRefresh, AFolderThatVanishesIsAProblemUntilItReturns)
{
    repo.write("a", "1").commit("one");
    load();
    const auto away = repo.path().string() + "-away";
    std::filesystem::rename(repo.path(), away);
    load();
    EXPECT_FALSE(store.snapshot().readProblem.value().isEmpty());
    EXPECT_EQ(store.snapshot().branches.value().size(), 1u);
    EXPECT_FALSE(store.history().historyProblem.value().isEmpty()) << "an empty page must say why it is empty";

    std::filesystem::rename(away, repo.path());
    load();
    EXPECT_EQ(store.snapshot().readProblem.value(), QString());
    EXPECT_EQ(store.history().historyProblem.value(), QString());
    EXPECT_EQ(store.history().history.value().size(), 1u);
}

TEST_F(StoreRefresh, HeadIsDescribedInEveryState)
{
    load();
    EXPECT_EQ(store.snapshot().headDescription(), QStringLiteral("main")) << "unborn";
    repo.write("a", "1").commit("one").git({"checkout", "-q", "--detach"});
    load();
    EXPECT_EQ(store.snapshot().headDescription(),
              QStringLiteral("HEAD detached at ") +
                  QString::fromStdString(store.snapshot().status.value().oid->substr(0, 7)));
}

// Closing a window while git runs must neither crash nor write, whatever it waits for.
TEST(StoreLifetime, ClosingAtEverySuspensionPointIsClean)
{
    TestRepository repo;
    repo.write("a", "1").commit("one");
    bool isOver = false;
    for (int finished = 0; !isOver; ++finished) {
        for (const bool jobHasRun : {false, true}) {
            ManualWorker worker;
            auto store = std::make_unique<RepositoryStore>(repo.path(), worker);
            store->snapshot().refresh(RefreshScope::full);
            store->snapshot().refresh(RefreshScope::full); // a pending pass must not start after the end
            for (int i = 0; i < finished && worker.waiting() > 0; ++i)
                worker.finish();
            isOver = worker.waiting() == 0;
            if (isOver)
                break;
            std::function<void()> comesBack;
            if (jobHasRun)
                comesBack = worker.runOnly(worker.waiting() - 1);
            store.reset();
            if (comesBack)
                comesBack();
            worker.finishAll();
            EXPECT_EQ(worker.waiting(), 0u);
        }
    }
}

} // namespace
} // namespace plovik
