// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include "GitKit/repository/DivergenceMemory.h"
#include "app/store/RepositoryStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace plovik {
namespace {

using gitkit::Divergence;

/// Four branches that follow origin/main: "main" is 1 ahead and checked out, "b" 2, "c" 3 and "even" none.
struct UpstreamCountsTest : testing::Test {
    TestRepository repo;
    TemporaryFolder cache;
    ManualWorker worker;
    std::unique_ptr<RepositoryStore> store;

    UpstreamCountsTest()
    {
        repo.commit("one")
            .git({"update-ref", "refs/remotes/origin/main", "HEAD"})
            .git({"remote", "add", "origin", "x"});
        for (const char* branch : {"even", "b", "c"})
            repo.git({"branch", "-q", branch, "main"});
        ahead("main", 1);
        ahead("b", 2);
        ahead("c", 3);
        for (const char* branch : {"main", "even", "b", "c"})
            repo.git({"branch", "-q", "-u", "origin/main", branch});
        repo.git({"checkout", "-q", "main"});
        open();
    }

    void ahead(const char* branch, int commits)
    {
        repo.git({"checkout", "-q", branch});
        for (int count = 0; count < commits; ++count)
            repo.commit(branch);
    }

    void open()
    {
        store.reset();
        worker.finishAll();
        store = std::make_unique<RepositoryStore>(repo.path(), worker, StoreServices{.cacheFolder = cache.path()});
    }

    /// Finishes everything but the counts and the history.
    void list()
    {
        store->snapshot().refresh(RefreshScope::full);
        worker.finishAllBut(Worker::Lane::longRead);
    }

    int ofBranch(const char* name) const { return store->counts().of(std::string("refs/heads/") + name).ahead; }
};

TEST_F(UpstreamCountsTest, CountsTheCheckedOutBranchThenThoseInSightThenTheRest)
{
    store->counts().setInSight({"refs/heads/c", "refs/heads/even"});
    list();
    std::vector<std::string> order;
    std::vector<std::string> known;
    const auto notifier = store->counts().changes.addNotifier([&] {
        for (const char* name : {"main", "b", "c"}) {
            if (ofBranch(name) > 0 && std::ranges::find(known, name) == known.end())
                known.emplace_back(name);
        }
    });
    worker.finishAll();
    EXPECT_THAT(known, testing::ElementsAre("main", "c", "b"));
    EXPECT_EQ(store->counts().ofHead(), (Divergence{1, 0}));
    EXPECT_EQ(ofBranch("b"), 2);
    EXPECT_EQ(ofBranch("c"), 3);
    EXPECT_EQ(ofBranch("even"), 0);
}

TEST_F(UpstreamCountsTest, ShowsAtOnceWhatAnEarlierWindowHasCounted)
{
    list();
    worker.finishAll();
    open();
    list();
    EXPECT_EQ(store->counts().ofHead(), (Divergence{1, 0}));
    EXPECT_EQ(ofBranch("c"), 3);
}

TEST_F(UpstreamCountsTest, KeepsAnEarlierCountForAMomentAndNoLonger)
{
    list();
    worker.finishAll();
    repo.commit("another");
    list();
    EXPECT_EQ(ofBranch("main"), 1) << "it would flicker";
    EXPECT_EQ(ofBranch("c"), 3);
    worker.advance(std::chrono::seconds(1));
    EXPECT_EQ(ofBranch("main"), 0) << "not known yet";
    EXPECT_EQ(ofBranch("c"), 3);
    worker.finishAll();
    EXPECT_EQ(ofBranch("main"), 2);
}

TEST_F(UpstreamCountsTest, EndsACountThatNobodyNeedsAndShowsNoneOfEarlierTips)
{
    const gitkit::CommitPair first{repo.head(), repo.read({"rev-parse", "refs/remotes/origin/main"})};
    list();
    ASSERT_EQ(worker.waiting(), 2U) << "the history and the first count";
    repo.git({"update-ref", "refs/remotes/origin/main", "refs/heads/c"});
    store->snapshot().refresh(RefreshScope::full);
    const auto memory = gitkit::DivergenceMemory::of(cache / "upstream-counts", repo / ".git");
    worker.finish();
    ASSERT_GT(worker.waiting(), 1U) << "the count and the second listing";
    // The count's turn comes only when everything is listed again, and what is remembered has been read.
    worker.finishAllBut(Worker::Lane::longRead);
    worker.finishAll();
    EXPECT_EQ(memory->find(first, ""), std::nullopt) << "its git must not have run";
    EXPECT_EQ(store->counts().ofHead(), (Divergence{1, 3}));
    EXPECT_EQ(store->counts().of("refs/heads/b"), (Divergence{2, 3}));
    EXPECT_EQ(store->counts().of("refs/heads/c"), Divergence());
}

TEST_F(UpstreamCountsTest, WindowsCloseWhileTheyCount)
{
    for (int finished = 0; finished < 10; ++finished) {
        open();
        store->snapshot().refresh(RefreshScope::full);
        for (int count = 0; count < finished && worker.waiting() > 0; ++count)
            worker.finish();
        store.reset();
        worker.finishAll();
    }
}

} // namespace
} // namespace plovik
