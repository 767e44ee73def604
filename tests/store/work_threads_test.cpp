// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/await/Await.h"
#include "app/await/PoolWorker.h"
#include "app/await/WorkThreads.h"
#include "app/store/Failure.h"
#include "tests/support/NoMoreThreads.h"

#include <gtest/gtest.h>

#include <latch>
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

QCoro::Task<> awaiting(Worker& worker, const AliveToken& alive, QString& said)
{
    try {
        co_await BlockingCall<void>(worker, Worker::Lane::shortRead, alive, [] {});
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
        launch(awaiting(worker, alive, said));
        EXPECT_THROW(threads.start([] {}), std::system_error);
    }
    EXPECT_TRUE(said.startsWith(u"The system can start no more threads"_s)) << said.toStdString();

    std::latch done(2);
    threads.start([&] { done.count_down(); });
    {
        const test::NoMoreThreads none;
        threads.start([&] { done.count_down(); }); // on the thread that there is
    }
    done.wait();
}

} // namespace
} // namespace plovik
