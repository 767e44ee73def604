// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/Worker.h"

#include <QThreadPool>

namespace plovik {

/// The worker of the running application. It has a few threads for local git and separate ones for the network.
class PoolWorker : public Worker {
public:
    PoolWorker();

    void post(Lane lane, std::function<void()> job, std::function<void()> done) override;
    std::unique_ptr<Delay> after(std::chrono::milliseconds delay, std::function<void()> elapsed) override;

private:
    QThreadPool local_;
    QThreadPool network_;
};

/// Does everything at once on the calling thread, for tests and tools without an event loop. Delays elapse immediately.
class InlineWorker : public Worker {
public:
    void post(Lane lane, std::function<void()> job, std::function<void()> done) override;
    std::unique_ptr<Delay> after(std::chrono::milliseconds delay, std::function<void()> elapsed) override;
};

} // namespace plovik
