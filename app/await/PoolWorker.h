// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/WorkThreads.h"
#include "app/await/Worker.h"

namespace plovik {

/// The worker of the running application. It has a few threads for local git and separate ones for the network.
class PoolWorker : public Worker {
public:
    void post(Lane lane, std::function<void()> job, std::function<void()> done) override;
    std::unique_ptr<Delay> after(std::chrono::milliseconds delay, std::function<void()> elapsed) override;

private:
    WorkThreads local_{4};
    WorkThreads network_{16};
};

/// Does everything at once on the calling thread, for tests and tools without an event loop. Delays elapse immediately.
class InlineWorker : public Worker {
public:
    void post(Lane lane, std::function<void()> job, std::function<void()> done) override;
    std::unique_ptr<Delay> after(std::chrono::milliseconds delay, std::function<void()> elapsed) override;
};

} // namespace plovik
