// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/await/WorkThreads.h"

#include <gtest/gtest.h>

#include <latch>
#include <pthread.h>

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

TEST(WorkThreads, DoWithoutAThreadThatCannotBeStarted)
{
    pthread_attr_t usual;
    ASSERT_EQ(::pthread_getattr_default_np(&usual), 0);
    pthread_attr_t huge;
    ASSERT_EQ(::pthread_attr_init(&huge), 0);
    ASSERT_EQ(::pthread_attr_setstacksize(&huge, std::size_t{1} << 46), 0);
    ASSERT_EQ(::pthread_setattr_default_np(&huge), 0);
    std::thread::id ranOn;
    WorkThreads threads(2);
    threads.start([&] { ranOn = std::this_thread::get_id(); });
    ASSERT_EQ(::pthread_setattr_default_np(&usual), 0);
    EXPECT_EQ(ranOn, std::this_thread::get_id()) << "and never waits for ever";

    std::latch done(1);
    threads.start([&] {
        ranOn = std::this_thread::get_id();
        done.count_down();
    });
    done.wait();
    EXPECT_NE(ranOn, std::this_thread::get_id());
    ::pthread_attr_destroy(&huge);
    ::pthread_attr_destroy(&usual);
}

} // namespace
} // namespace plovik
