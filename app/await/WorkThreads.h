// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace plovik {

/// A few threads that run jobs in the order in which they were given. A thread is started when a job finds none idle,
/// up to the limit, and stays. Owned by a worker; destroying it waits for the jobs that run and drops those that wait.
///
/// QThreadPool would let jobs wait for ever when no thread can be started.
class WorkThreads {
public:
    explicit WorkThreads(std::size_t most) : most_(most) {}
    ~WorkThreads();
    WorkThreads(const WorkThreads&) = delete;
    WorkThreads& operator=(const WorkThreads&) = delete;

    /// Runs `job` on one of the threads. Throws std::system_error when there is none and none can be started. Main
    /// thread only.
    void start(std::function<void()> job);

private:
    void run();
    void addThread();

    std::size_t most_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> waiting_; ///< guarded by mutex_, as are the next two
    std::size_t idle_ = 0;
    bool isEnding_ = false;
    std::vector<std::thread> threads_; ///< main thread only
};

} // namespace plovik
