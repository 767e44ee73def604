// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/store/ManualWorker.h"
#include "tests/support/ProcessesIn.h"
#include "tests/support/TestRepository.h"

#include "GitKit/repository/GitRepository.h"
#include "app/await/PoolWorker.h"
#include "app/store/RepositoryStore.h"
#include "app/store/readers/Latest.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace plovik {
namespace {

/// Runs git, so that a reading that was ended before it began leaves nothing in the log.
std::string printed(const gitkit::GitRepository& repo, const std::string& argument)
{
    return repo.git({"rev-parse", argument});
}

struct LatestReads : testing::Test {
    TestRepository repo;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};
    int changes = 0;
    std::optional<Latest<std::string, std::string>> latest{std::in_place, store.git(), &printed, [this] { ++changes; }};

    std::size_t runs() const { return store.changes().commandLog().commands().size(); }
};

TEST_F(LatestReads, ShowNothingThatWasOvertaken)
{
    latest->ask("--show-prefix");
    latest->ask("--is-bare-repository");
    latest->ask("--is-inside-work-tree");
    worker.finishAll();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(latest->answered(), "--is-inside-work-tree");
    EXPECT_EQ(*latest->result(), "true\n");
    EXPECT_EQ(runs(), 1u) << "what was overtaken before it began runs no git";

    // An answer that comes after that of a newer request.
    latest->ask("--is-bare-repository");
    const auto late = worker.runOnly();
    latest->ask("--show-cdup");
    worker.finish();
    late();
    EXPECT_EQ(latest->answered(), "--show-cdup");
    EXPECT_EQ(changes, 2);
}

TEST_F(LatestReads, KeepTheLastResultBesideAFailureThatCanBeAskedForAgain)
{
    latest->ask("--is-inside-work-tree");
    worker.finishAll();
    latest->ask("nothing");
    worker.finishAll();
    ASSERT_TRUE(latest->failure());
    EXPECT_EQ(latest->failure()->kind, gitkit::ErrorKind::noSuchRef) << latest->failure()->message.toStdString();
    EXPECT_EQ(latest->answered(), "--is-inside-work-tree");

    repo.write("a", "1").commit("one").git({"branch", "nothing"});
    latest->ask("nothing");
    worker.finishAll();
    EXPECT_FALSE(latest->failure());
    EXPECT_EQ(*latest->result(), repo.head() + "\n");
    latest->ask("nothing");
    EXPECT_EQ(worker.waiting(), 0u) << "it is there already";
}

TEST_F(LatestReads, FinishWhatIsAskedForAgainBeforeTheyReadItAnew)
{
    latest->askAgain("--is-inside-work-tree");
    latest->askAgain("--is-inside-work-tree");
    latest->askAgain("--is-inside-work-tree");
    EXPECT_EQ(worker.waiting(), 1u);
    worker.finish();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(worker.waiting(), 1u);
    worker.finishAll();
    EXPECT_EQ(changes, 2);
}

TEST_F(LatestReads, EndWithTheirOwner)
{
    latest->ask("--is-inside-work-tree");
    const auto late = worker.runOnly();
    latest->askAgain("--show-cdup");
    latest.reset();
    late();
    worker.finishAll();
    EXPECT_EQ(changes, 0);
}

/// Runs a git that would take ten minutes, and has a program of its own by then.
std::string endless(const gitkit::GitRepository& repo, const std::string& argument)
{
    return argument == "quick" ? "done" : repo.git({"-c", "alias.wait=!sleep 600", "wait"});
}

TEST_F(LatestReads, EndTheGitOfWhatIsOvertakenWithinASecond)
{
    PoolWorker pool;
    RepositoryStore window{repo.path(), pool};
    for (const Worker::Lane lane : {Worker::Lane::shortRead, Worker::Lane::longRead}) {
        std::optional<Latest<std::string, std::string>> slow{std::in_place, window.git(), &endless, [] {}, lane};
        const auto begin = [&](const std::string& request) {
            slow->ask(request);
            QElapsedTimer waited;
            waited.start();
            while (processesIn(repo.path()) < 2 && waited.elapsed() < 10'000)
                QCoreApplication::processEvents();
            EXPECT_GE(processesIn(repo.path()), 2);
        };
        begin("one");
        slow->ask("quick");
        EXPECT_TRUE(haveAllEndedIn(repo.path(), std::chrono::seconds(1))) << "overtaken";
        begin("another");
        slow.reset();
        EXPECT_TRUE(haveAllEndedIn(repo.path(), std::chrono::seconds(1))) << "nobody is left to read it";
    }
    // What was ended is told to the main thread a moment later. Nobody would free it after the last test.
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < 100)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
}

std::string waiting(const int&, const std::stop_token& stop) { return stop.stop_requested() ? "stopped" : "done"; }

TEST_F(LatestReads, EndWorkThatNeedsNoRepository)
{
    Latest<int, std::string> work{store.git(), &waiting, [this] { ++changes; }};
    work.ask(1);
    work.forget();
    worker.finishAll();
    EXPECT_EQ(changes, 0);
    EXPECT_FALSE(work.result());
    work.ask(1);
    worker.finishAll();
    EXPECT_EQ(work.result(), "done");
}

} // namespace
} // namespace plovik
