// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/await/Await.h"
#include "app/await/PoolWorker.h"
#include "app/await/WorkThreads.h"
#include "app/store/Failure.h"

#include <gtest/gtest.h>

#include <latch>
#include <pthread.h>
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
        co_await BlockingCall<void>(worker, Worker::Lane::local, alive, [] {});
        said = u"done"_s;
    } catch (const std::exception& thrown) {
        said = failureOf(thrown).message;
    }
}

TEST(WorkThreads, SayThatNoThreadCanBeStartedAndNeverWaitForEver)
{
    pthread_attr_t usual;
    ASSERT_EQ(::pthread_getattr_default_np(&usual), 0);
    pthread_attr_t huge;
    ASSERT_EQ(::pthread_attr_init(&huge), 0);
    ASSERT_EQ(::pthread_attr_setstacksize(&huge, std::size_t{1} << 46), 0);
    ASSERT_EQ(::pthread_setattr_default_np(&huge), 0);
    PoolWorker worker;
    const auto alive = std::make_shared<const std::monostate>();
    QString said;
    launch(awaiting(worker, alive, said));
    WorkThreads threads(2);
    EXPECT_THROW(threads.start([] {}), std::system_error);
    ASSERT_EQ(::pthread_setattr_default_np(&usual), 0);
    EXPECT_TRUE(said.startsWith(u"The system can start no more threads"_s)) << said.toStdString();

    std::latch done(2);
    threads.start([&] { done.count_down(); });
    ASSERT_EQ(::pthread_setattr_default_np(&huge), 0);
    threads.start([&] { done.count_down(); }); // on the thread that there is
    ASSERT_EQ(::pthread_setattr_default_np(&usual), 0);
    done.wait();
    ::pthread_attr_destroy(&huge);
    ::pthread_attr_destroy(&usual);
}

} // namespace
} // namespace plovik
