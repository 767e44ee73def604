// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/WorkThreads.h"
#include "app/await/Worker.h"

#include <array>

namespace plovik {

/// The worker of the running application. Each lane has its own threads, enough for the work of many
/// windows at once, so that none waits for another.
class PoolWorker : public Worker {
public:
    void post(Lane lane, std::function<void()> job, std::function<void()> done) override;
    std::unique_ptr<Delay> after(std::chrono::milliseconds delay, std::function<void()> elapsed) override;

private:
    std::array<WorkThreads, 4> lanes_{WorkThreads(16), WorkThreads(16), WorkThreads(32), WorkThreads(16)};
};

/// Does everything at once on the calling thread, for tests and tools without an event loop. Delays elapse immediately.
class InlineWorker : public Worker {
public:
    void post(Lane lane, std::function<void()> job, std::function<void()> done) override;
    std::unique_ptr<Delay> after(std::chrono::milliseconds delay, std::function<void()> elapsed) override;
};

} // namespace plovik
