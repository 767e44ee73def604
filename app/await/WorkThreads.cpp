// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/await/WorkThreads.h"

#include <system_error>
#include <utility>

namespace plovik {

WorkThreads::~WorkThreads()
{
    {
        const std::scoped_lock lock(mutex_);
        isEnding_ = true;
        waiting_.clear();
    }
    wake_.notify_all();
    for (std::thread& thread : threads_)
        thread.join();
}

void WorkThreads::start(std::function<void()> job)
{
    bool isThreadNeeded = false;
    {
        const std::scoped_lock lock(mutex_);
        isThreadNeeded = waiting_.size() >= idle_;
    }
    if (isThreadNeeded && threads_.size() < most_)
        addThread();
    {
        const std::scoped_lock lock(mutex_);
        waiting_.push_back(std::move(job));
    }
    wake_.notify_one();
}

void WorkThreads::addThread()
{
    try {
        threads_.emplace_back([this] { run(); });
    } catch (const std::system_error&) {
        // The threads that there are do the work.
        if (threads_.empty())
            throw;
    }
}

void WorkThreads::run()
{
    std::unique_lock lock(mutex_);
    while (true) {
        ++idle_;
        wake_.wait(lock, [this] { return isEnding_ || !waiting_.empty(); });
        --idle_;
        if (isEnding_)
            return;
        std::function<void()> job = std::move(waiting_.front());
        waiting_.pop_front();
        lock.unlock();
        job();
        job = nullptr;
        lock.lock();
    }
}

} // namespace plovik
