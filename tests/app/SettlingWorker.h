// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/PoolWorker.h"
#include "tests/app/EventWait.h"

namespace plovik::test {

/// A pool that tells when everything it was given, and whatever that led to, has ended.
class SettlingWorker : public PoolWorker {
public:
    SettlingWorker() = default;
    SettlingWorker(const SettlingWorker&) = delete;
    SettlingWorker& operator=(const SettlingWorker&) = delete;
    /// What is under way tells this worker when it has ended.
    ~SettlingWorker() override { settle(); }

    void post(Lane lane, std::function<void()> job, std::function<void()> done) override
    {
        ++underWay_;
        PoolWorker::post(lane, std::move(job), [this, done = std::move(done)] {
            done();
            --underWay_;
        });
    }

    bool settle()
    {
        return waitUntil([this] { return underWay_ == 0; });
    }

private:
    int underWay_ = 0;
};

} // namespace plovik::test
