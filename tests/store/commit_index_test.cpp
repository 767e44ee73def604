// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include "GitKit/repository/CommitGraphCache.h"
#include "app/store/RepositoryStore.h"

#include <gtest/gtest.h>

namespace plovik {
namespace {

using namespace std::chrono_literals;

struct CommitIndexTest : testing::Test {
    TestRepository repo;
    TemporaryFolder cache;
    ManualWorker worker;
    bool isWanted = true;
    std::unique_ptr<RepositoryStore> store;

    CommitIndexTest()
    {
        repo.commit("one");
        open();
    }

    void open()
    {
        store.reset();
        store = std::make_unique<RepositoryStore>(
            repo.path(), worker,
            StoreServices{.cacheFolder = cache.path(), .keepsIndexes = [this] { return isWanted; }});
        load();
    }

    void load()
    {
        store->snapshot().refresh(RefreshScope::full);
        worker.finishAll();
    }

    void walk(std::chrono::milliseconds time)
    {
        store->index().walkTook(time);
        worker.finishAll();
    }

    bool isSeen() const { return store->git().graph()->alternates().has_value(); }
    std::uintmax_t bytes() const { return gitkit::commitGraphBytes(cache / "commit-graphs"); }
};

TEST_F(CommitIndexTest, IsWrittenAfterALongWalkAndSeenByLaterWindows)
{
    walk(500ms);
    EXPECT_FALSE(isSeen());
    walk(501ms);
    EXPECT_TRUE(isSeen());
    open();
    EXPECT_TRUE(isSeen());
}

TEST_F(CommitIndexTest, GetsWhatIsNewOnceItIsQuiet)
{
    walk(1s);
    const std::uintmax_t before = bytes();
    repo.commit("two").commit("three");
    load();
    EXPECT_EQ(bytes(), before);
    worker.advance(10s);
    worker.finishAll();
    EXPECT_GT(bytes(), before);
    EXPECT_TRUE(isSeen());
    const int posted = worker.posted();
    load();
    worker.advance(10s);
    EXPECT_LE(worker.posted() - posted, 8) << "nothing new, so nothing is written";
}

TEST_F(CommitIndexTest, IsNeitherWrittenNorSeenWhenTheUserWantsNone)
{
    isWanted = false;
    load();
    walk(1s);
    EXPECT_EQ(bytes(), 0U);
    isWanted = true;
    load();
    walk(1s);
    EXPECT_TRUE(isSeen());
    isWanted = false;
    load();
    EXPECT_FALSE(isSeen());
    open();
    EXPECT_FALSE(isSeen());
}

} // namespace
} // namespace plovik
