// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/watcher/RepositoryScope.h"
#include "app/services/watcher/RepositoryWatcher.h"
#include "tests/app/EventWait.h"
#include "tests/support/NoMoreThreads.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <set>
#include <thread>

namespace plovik {
namespace {

using namespace std::chrono_literals;
using test::waitUntil;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
namespace fs = std::filesystem;

void run(const std::string& command) { ASSERT_EQ(std::system(command.c_str()), 0) << command; }

void write(const fs::path& file, std::string_view text = "text") { std::ofstream(file, std::ios::binary) << text; }

/// Watches one root, except folders named "skipped"; ".noise" files are not told.
class TestScope : public WatchScope {
public:
    TestScope(std::string root, std::atomic<int>& seen, std::atomic<bool>& held)
        : root_(std::move(root)), seen_(seen), held_(held)
    {}
    std::vector<std::string> roots() override { return {root_}; }
    void keepWatched(std::vector<std::string>& folders, FolderWalk) override
    {
        std::erase_if(folders, [](const std::string& folder) { return folder.ends_with("/skipped"); });
    }
    bool reports(const std::string& path) override
    {
        ++seen_;
        held_.wait(true);
        return !path.ends_with(".noise");
    }
    bool reshapedBy(const std::string&) override { return false; }

private:
    std::string root_;
    std::atomic<int>& seen_;
    std::atomic<bool>& held_;
};

/// Collects what is told of a folder.
class WatchTest : public testing::Test {
protected:
    void start(std::unique_ptr<WatchScope> scope, FileEventLimits limits = {.latency = 20ms})
    {
        bool watching = false;
        told_.clear();
        events_.emplace(std::move(scope),
                        FileEventCallbacks{.onBatch =
                                               [this](const FileEventBatch& batch) {
                                                   batches_ += 1;
                                                   everything_ |= batch.everything;
                                                   told_.insert(batch.paths.begin(), batch.paths.end());
                                               },
                                           .onWatching = [&] { watching = true; },
                                           .onLimitReached = [this] { limitReached_ += 1; }},
                        limits);
        ASSERT_TRUE(waitUntil([&] { return watching; }));
    }

    bool told(const fs::path& path)
    {
        return waitUntil([&] { return told_.contains(path.string()); });
    }

    /// All that was told of what was done so far, ended by a file in `folder`; forgets it.
    std::set<std::string> allTold(const fs::path& folder)
    {
        const fs::path mark = folder / ("mark" + std::to_string(++marks_));
        // A root that has just come back tells of itself first, and of its files once it is watched again.
        const auto isTold = [&] { return told_.contains(mark.string()); };
        for (int tries = 0; tries < 10 && !isTold(); ++tries) {
            write(mark);
            waitUntil(isTold, 1s);
        }
        EXPECT_TRUE(isTold());
        batches_ = 0;
        everything_ = false;
        auto all = std::exchange(told_, {});
        std::erase_if(all, [](const std::string& path) { return path.find("/mark") != std::string::npos; });
        return all;
    }

    TemporaryFolder folder_;
    std::set<std::string> told_;
    int batches_ = 0;
    bool everything_ = false;
    int limitReached_ = 0;
    int marks_ = 0;
    std::optional<FileEvents> events_;
};

class FileEventsTest : public WatchTest {
protected:
    FileEventsTest() { fs::create_directory(root_); }
    void start(FileEventLimits limits = {.latency = 20ms})
    {
        WatchTest::start(std::make_unique<TestScope>(root_.string(), seen_, held_), limits);
    }
    std::set<std::string> settle() { return allTold(root_); }

    fs::path root_ = folder_.path() / "root";
    /// Changes that the watching thread has read, and whether it waits at the next one.
    std::atomic<int> seen_ = 0;
    std::atomic<bool> held_ = false;
};

TEST_F(FileEventsTest, NewFoldersAreWatchedWithWhatIsAlreadyInThem)
{
    start();
    fs::create_directories(root_ / "a/b/c/d");
    write(root_ / "a/b/c/d/file");
    EXPECT_TRUE(told(root_ / "a/b/c/d/file"));

    fs::create_directories(folder_.path() / "outside/deep");
    write(folder_.path() / "outside/deep/old");
    fs::rename(folder_.path() / "outside", root_ / "inside");
    EXPECT_TRUE(told(root_ / "inside/deep/old"));
    settle();

    write(root_ / "a/b/c/d/file", "changed");
    write(root_ / "inside/deep/old", "changed");
    EXPECT_TRUE(told(root_ / "a/b/c/d/file"));
    EXPECT_TRUE(told(root_ / "inside/deep/old"));
}

TEST_F(FileEventsTest, MovedFoldersAreFollowedAndLostSightOfOutside)
{
    fs::create_directories(root_ / "old/deep");
    fs::create_directories(root_ / "leaving/deep");
    start();
    fs::rename(root_ / "old", root_ / "new");
    fs::rename(root_ / "leaving", folder_.path() / "left");
    // The names are taken again at once, by folders of their own.
    fs::create_directories(root_ / "old/deep");
    EXPECT_TRUE(told(root_ / "old/deep"));
    EXPECT_TRUE(told(root_ / "new/deep"));
    settle();

    write(folder_.path() / "left/deep/file");
    write(root_ / "new/deep/file");
    write(root_ / "old/deep/file");
    EXPECT_TRUE(told(root_ / "new/deep/file"));
    EXPECT_TRUE(told(root_ / "old/deep/file"));
    EXPECT_THAT(settle(), Each(Not(HasSubstr("lea"))));
}

TEST_F(FileEventsTest, SkippedFoldersAndLinksAreNotEntered)
{
    fs::create_directories(root_ / "skipped/below");
    fs::create_directory(folder_.path() / "elsewhere");
    fs::create_directory_symlink(folder_.path() / "elsewhere", root_ / "link");
    start();
    fs::create_directories(root_ / "later/skipped");
    EXPECT_TRUE(told(root_ / "later"));
    settle();

    write(root_ / "skipped/file");
    write(root_ / "skipped/below/file");
    write(root_ / "later/skipped/file");
    write(root_ / "link/file");
    write(root_ / "unwanted.noise");
    EXPECT_THAT(settle(), IsEmpty());
}

TEST_F(FileEventsTest, TheRootMayGoAndComeBackEvenUnderSomebodysFeet)
{
    start();
    // A process that stands in the folder keeps the folder itself from telling that it is gone.
    const fs::path before = fs::current_path();
    fs::current_path(root_);
    fs::remove_all(root_);
    EXPECT_TRUE(waitUntil([&] { return everything_; }));
    fs::current_path(before);

    everything_ = false;
    fs::create_directories(root_ / "fresh");
    EXPECT_TRUE(waitUntil([&] { return everything_; }));
    settle();
    write(root_ / "fresh/file");
    EXPECT_TRUE(told(root_ / "fresh/file"));
    settle();

    // Its parent is renamed, and later back.
    const fs::path away = folder_.path().string() + "-away";
    fs::rename(folder_.path(), away);
    EXPECT_TRUE(waitUntil([&] { return everything_; }));
    everything_ = false;
    fs::rename(away, folder_.path());
    EXPECT_TRUE(waitUntil([&] { return everything_; }));
    settle();
    write(root_ / "fresh/file");
    EXPECT_TRUE(told(root_ / "fresh/file"));
}

TEST_F(FileEventsTest, BurstIsToldAtOnceAndThenInFewBatchesOfBoundedSize)
{
    start({.latency = 1s, .mostPaths = 100});
    const auto begin = std::chrono::steady_clock::now();
    write(root_ / "first");
    EXPECT_TRUE(told(root_ / "first"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 900ms);

    fs::create_directory(root_ / "many");
    for (int i = 0; i < 5000; ++i)
        write(root_ / "many" / std::to_string(i));
    EXPECT_TRUE(told(root_ / "many"));
    const auto duration = std::chrono::steady_clock::now() - begin;
    EXPECT_LE(batches_, 2 + duration / 1s);
    EXPECT_LE(told_.size(), 400u * static_cast<unsigned>(batches_));
}

TEST_F(FileEventsTest, MoreChangesThanTheSystemCountsLeadToALookAtEverything)
{
    start();
    write(root_ / "a");
    write(root_ / "b");
    settle();
    held_ = true;
    seen_ = 0;
    write(root_ / "held");
    while (seen_ == 0)
        std::this_thread::yield();
    int places = 0;
    std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> places;
    for (int i = 0; i < places; ++i)
        fs::permissions(root_ / (i % 2 == 0 ? "a" : "b"), fs::perms::owner_all);
    fs::create_directories(root_ / "new/folder");
    held_ = false;
    held_.notify_all();

    EXPECT_TRUE(waitUntil([&] { return everything_; }));
    settle();
    write(root_ / "new/folder/file");
    EXPECT_TRUE(told(root_ / "new/folder/file"));
}

TEST_F(FileEventsTest, LimitIsToldOnceAndTheRestStaysWatched)
{
    for (const char* name : {"a", "b", "c", "d"})
        fs::create_directory(root_ / name);
    start({.mostFolders = 3});
    fs::create_directories(root_ / "e/f");
    write(root_ / "file");
    EXPECT_TRUE(told(root_ / "file"));
    settle();
    EXPECT_EQ(limitReached_, 1);
}

TEST_F(FileEventsTest, LimitIsToldWhereNoThreadCanBeStarted)
{
    {
        const test::NoMoreThreads none;
        events_.emplace(std::make_unique<TestScope>(root_.string(), seen_, held_),
                        FileEventCallbacks{.onBatch = {}, .onLimitReached = [this] { limitReached_ += 1; }});
    }
    EXPECT_TRUE(waitUntil([this] { return limitReached_ == 1; }));
}

TEST_F(FileEventsTest, StoppedWatchingCallsNobodyEvenWithABatchOnItsWay)
{
    start();
    // The thread sees the file and posts the batch, but the event loop does not run yet.
    const int before = seen_;
    write(root_ / "file");
    while (seen_ == before)
        std::this_thread::yield();
    // By the time it sees the next one, the first has been posted.
    const int first = seen_;
    write(root_ / "another");
    while (seen_ == first)
        std::this_thread::yield();
    events_->stop();
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(batches_, 0);
}

/// Repositories watched as a window watches them, through git itself.
class RepositoryWatcherTest : public WatchTest {
protected:
    static void git(const fs::path& folder, const std::string& arguments)
    {
        run("GIT_CONFIG_GLOBAL=/dev/null GIT_CONFIG_NOSYSTEM=1 git -C '" + folder.string() +
            "' -c user.name=A -c user.email=a@b -c protocol.file.allow=always " + arguments + " >/dev/null 2>&1");
    }

    static void makeRepository(const fs::path& path)
    {
        fs::create_directories(path);
        git(path, "init");
        write(path / ".gitignore", "build/\n");
        write(path / "file");
        git(path, "add .");
        git(path, "commit -m one");
    }

    void watch(const fs::path& topLevel)
    {
        start(std::make_unique<RepositoryScope>(topLevel, WatcherGit::installed(),
                                                std::make_shared<KnownGitDirectories>()));
    }

    fs::path top_ = folder_.path() / "repo";
};

TEST_F(RepositoryWatcherTest, LocksObjectsAndIgnoredFoldersAreNotWatched)
{
    makeRepository(top_);
    fs::create_directories(top_ / "build/deep");
    watch(top_);
    write(top_ / ".git/index.lock");
    fs::remove(top_ / ".git/index.lock");
    write(top_ / ".git/objects/pack/pack-1.pack");
    write(top_ / "build/deep/a.o");
    write(top_ / "Cargo.lock");
    fs::create_directories(top_ / ".git/plovik/saved");
    write(top_ / ".git/plovik/saved/a");
    write(top_ / ".git/PLOVIK_UNDO_HEAD");
    write(top_ / ".git/logs/PLOVIK_UNDO_HEAD");
    EXPECT_THAT(allTold(top_), IsEmpty());

    // A folder that appears is asked about, and a branch may be called like the folder of the objects.
    fs::create_directories(top_ / "src/build");
    git(top_, "branch objects/new");
    EXPECT_TRUE(told(top_ / ".git/refs/heads/objects/new"));
    EXPECT_TRUE(told(top_ / "src/build"));
    allTold(top_);
    write(top_ / "src/build/a.o");
    git(top_, "branch objects/newer");
    EXPECT_TRUE(told(top_ / ".git/refs/heads/objects/newer"));
    EXPECT_THAT(allTold(top_), Not(Contains(HasSubstr("a.o"))));
}

TEST_F(RepositoryWatcherTest, ChangedIgnoreRulesChangeWhatIsWatched)
{
    makeRepository(top_);
    fs::create_directories(top_ / "build");
    fs::create_directories(top_ / "output");
    watch(top_);
    write(top_ / ".gitignore", "output/\n");
    EXPECT_TRUE(told(top_ / "build")) << "watched from now on";
    allTold(top_);

    write(top_ / "output/file");
    write(top_ / "build/file");
    EXPECT_THAT(allTold(top_), ElementsAre((top_ / "build/file").string()));
}

TEST_F(RepositoryWatcherTest, GitDirectoriesOutsideAndWorkingTreesInsideAreWatched)
{
    makeRepository(top_);
    const fs::path linked = folder_.path() / "linked";
    git(top_, "worktree add ../linked");
    git(top_, "submodule add ../repo sub");
    git(top_, "commit -m two");

    watch(linked);
    git(linked, "update-index --force-remove file");
    EXPECT_TRUE(told(top_ / ".git/worktrees/linked/index"));
    git(top_, "branch other");
    EXPECT_TRUE(told(top_ / ".git/refs/heads/other"));

    watch(top_ / "sub");
    git(top_ / "sub", "branch other");
    EXPECT_TRUE(told(top_ / ".git/modules/sub/refs/heads/other"));

    // From above, a submodule's files and git directory count, its objects and what it ignores do not.
    fs::create_directories(top_ / "sub/build");
    watch(top_);
    write(top_ / ".git/modules/sub/objects/pack/pack-1.pack");
    write(top_ / "sub/build/a.o");
    write(top_ / "sub/file", "changed");
    EXPECT_THAT(allTold(top_), ElementsAre((top_ / "sub/file").string()));
    fs::create_directories(top_ / "sub/src/build");
    EXPECT_TRUE(told(top_ / "sub/src/build"));
    allTold(top_);
    write(top_ / "sub/src/build/a.o");
    git(top_ / "sub", "branch another");
    EXPECT_TRUE(told(top_ / ".git/modules/sub/refs/heads/another"));
    EXPECT_THAT(allTold(top_), Not(Contains(HasSubstr("a.o"))));
}

TEST_F(RepositoryWatcherTest, TellsTheWindowWhetherGitsFilesChanged)
{
    makeRepository(top_);
    std::vector<bool> calls;
    bool watching = false;
    std::optional<RepositoryWatcher> watcher;
    const auto firstCallAfter = [&](auto change) -> std::optional<bool> {
        calls.clear();
        watching = false;
        watcher.emplace(top_, WatcherGit::installed(),
                        WatcherCallbacks{.onChange = [&](bool git) { calls.push_back(git); },
                                         .onWatching = [&] { watching = true; }});
        if (!waitUntil([&] { return watching; }))
            return std::nullopt;
        change();
        return waitUntil([&] { return !calls.empty(); }) ? std::optional<bool>(calls.front()) : std::nullopt;
    };
    EXPECT_EQ(firstCallAfter([&] {
                  write(top_ / ".git/index.lock");
                  fs::remove(top_ / ".git/index.lock");
                  write(top_ / "file", "changed");
              }),
              false);
    EXPECT_EQ(firstCallAfter([&] { git(top_, "update-index --force-remove file"); }), true);
    EXPECT_EQ(firstCallAfter([&] { fs::rename(top_, folder_.path() / "away"); }), true);
    EXPECT_EQ(firstCallAfter([&] { fs::rename(folder_.path() / "away", top_); }), true);
}

TEST(GitDirectoryChanged, FollowsTheRuleForBatches)
{
    const std::vector<std::string> elsewhere = {"/data/store"};
    const auto changed = [&](std::vector<std::string> paths) { return gitDirectoryChanged(paths, elsewhere); };
    EXPECT_EQ(changed({"/r/.git/index.lock", "/r/Cargo.lock"}), std::nullopt);
    EXPECT_EQ(changed({"/r/.git/index.lock", "/r/.git/index"}), true);
    EXPECT_EQ(changed({"/r/src/a.c", "/r/.gitignore", "/r/.github/x", "/data/store2/x"}), false);
    EXPECT_EQ(changed({"/r/src/a.c", "/r/.git"}), true);
    EXPECT_EQ(changed({"/r/src/a.c", "/data/store/HEAD"}), true);
    EXPECT_EQ(changed({}), std::nullopt);
}

} // namespace
} // namespace plovik
