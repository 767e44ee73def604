// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/GitRepository.h"
#include "app/await/Await.h"
#include "app/await/PoolWorker.h"
#include "app/await/WorkThreads.h"
#include "app/store/CommandLog.h"
#include "app/store/Failure.h"
#include "app/store/GitAccess.h"
#include "tests/support/NoMoreThreads.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <functional>
#include <latch>
#include <new>
#include <system_error>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

TEST(WorkThreads, RunJobsBesideEachOtherUpToTheLimit)
{
    std::latch bothRun(2);
    std::latch allDone(3);
    WorkThreads threads(2);
    for (int job = 0; job < 2; ++job)
        threads.start([&] {
            bothRun.arrive_and_wait();
            allDone.count_down();
        });
    threads.start([&] { allDone.count_down(); });
    allDone.wait();
}

QCoro::Task<> awaiting(Worker& worker, const AliveToken& alive, QString& said, std::function<void()> job)
{
    try {
        co_await BlockingCall<void>(worker, Worker::Lane::shortRead, alive, std::move(job));
        said = u"done"_s;
    } catch (const std::exception& thrown) {
        said = failureOf(thrown).message;
    }
}

TEST(WorkThreads, SayThatNoThreadCanBeStartedAndNeverWaitForEver)
{
    PoolWorker worker;
    const auto alive = std::make_shared<const std::monostate>();
    QString said;
    WorkThreads threads(2);
    {
        const test::NoMoreThreads none;
        launch(awaiting(worker, alive, said, [] {}));
        EXPECT_THROW(threads.start([] {}), std::system_error);
    }
    EXPECT_TRUE(said.startsWith(u"The system can start no more threads"_s)) << said.toStdString();
    InlineWorker inlined;
    launch(awaiting(inlined, alive, said, [] { throw std::bad_alloc(); }));
    EXPECT_EQ(said, u"There is not enough memory for this."_s);

    std::latch done(2);
    threads.start([&] { done.count_down(); });
    {
        const test::NoMoreThreads none;
        threads.start([&] { done.count_down(); }); // on the thread that there is
    }
    done.wait();
}

TEST(GitAccess, EndsTheGitOfItsReadsWhenItIsClosed)
{
    TestRepository repo;
    const CommandLog log;
    InlineWorker worker;
    GitAccess git(repo.path(), worker, log);
    std::stop_source overtaken;
    const auto one = git.repository({});
    const auto two = git.repository(overtaken.get_token());
    const auto three = git.repository(std::stop_source().get_token());
    const auto asks = [](const auto& repository) { repository->runner().output({"version"}); };
    EXPECT_NO_THROW(asks(two));
    overtaken.request_stop();
    EXPECT_THROW(asks(two), gitkit::RunStopped);
    EXPECT_NO_THROW(asks(three));
    git.close();
    EXPECT_THROW(asks(one), gitkit::RunStopped);
    EXPECT_THROW(asks(three), gitkit::RunStopped);
}

} // namespace
} // namespace plovik
