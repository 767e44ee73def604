// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <pthread.h>

namespace plovik::test {

/// While this lives, no thread can be started: each would need a stack that no machine has.
class NoMoreThreads {
public:
    NoMoreThreads()
    {
        EXPECT_EQ(::pthread_getattr_default_np(&usual_), 0);
        pthread_attr_t huge;
        EXPECT_EQ(::pthread_attr_init(&huge), 0);
        EXPECT_EQ(::pthread_attr_setstacksize(&huge, std::size_t{1} << 46), 0);
        EXPECT_EQ(::pthread_setattr_default_np(&huge), 0);
        ::pthread_attr_destroy(&huge);
    }
    ~NoMoreThreads()
    {
        EXPECT_EQ(::pthread_setattr_default_np(&usual_), 0);
        ::pthread_attr_destroy(&usual_);
    }
    NoMoreThreads(const NoMoreThreads&) = delete;
    NoMoreThreads& operator=(const NoMoreThreads&) = delete;

private:
    pthread_attr_t usual_{};
};

} // namespace plovik::test
