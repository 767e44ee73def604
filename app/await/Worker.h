// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace plovik {

/// Runs blocking work off the main thread and reports back on it. Tests replace it to control threads and time.
///
/// All functions are called on the main thread. A worker outlives everything that uses it.
class Worker {
public:
    /// No work waits for that of another lane: staging does not wait for a search, nor a status for a fetch.
    enum class Lane {
        change,    ///< changes a repository without the network
        shortRead, ///< takes milliseconds, and longer only with a repository's size: a status, a commit, a diff
        longRead,  ///< walks the history
        network
    };

    /// Cancels the callback when it is destroyed.
    class Delay {
    public:
        virtual ~Delay() = default;
    };

    virtual ~Worker() = default;

    /// Runs `job` once on some thread, then `done` once on the main thread. `job` does not throw. Throws
    /// std::system_error, and calls neither, when the system has no thread left.
    virtual void post(Lane lane, std::function<void()> job, std::function<void()> done) = 0;

    /// Calls `elapsed` on the main thread after `delay` of monotonic time, unless the returned object is destroyed
    /// before.
    virtual std::unique_ptr<Delay> after(std::chrono::milliseconds delay, std::function<void()> elapsed) = 0;

    /// Returns the worker of the running application, a pool of threads. Lives as long as the process.
    static Worker& pool();
};

} // namespace plovik
