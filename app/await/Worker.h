// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace plovik {

/// Runs blocking work off the main thread and comes back to it. It is the one seam between coroutines and time.
///
/// All calls are made on the main thread. A worker outlives all that use it.
class Worker {
public:
    /// Network work has threads of its own, so that a fetch that hangs never starves a status read.
    enum class Lane { local, network };

    /// Cancels its callback when it is destroyed.
    class Delay {
    public:
        virtual ~Delay() = default;
    };

    virtual ~Worker() = default;

    /// Runs `job` once on some thread, then `done` once on the main thread. `job` does not throw.
    virtual void post(Lane lane, std::function<void()> job, std::function<void()> done) = 0;

    /// Calls `elapsed` on the main thread after `delay` of monotonic time, unless the result is destroyed before.
    virtual std::unique_ptr<Delay> after(std::chrono::milliseconds delay, std::function<void()> elapsed) = 0;

    /// The worker of the running application: a pool of threads. Lives as long as the process.
    static Worker& pool();
};

} // namespace plovik
