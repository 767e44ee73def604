// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/Worker.h"

#include <algorithm>
#include <deque>
#include <vector>

namespace plovik {

/// A worker whose jobs wait until the test releases them, in the order that the test wants.
class ManualWorker : public Worker {
public:
    ManualWorker() = default;
    /// What still waits comes back to stores that are gone, and unwinds.
    ~ManualWorker() override { finishAll(); }
    ManualWorker(const ManualWorker&) = delete;
    ManualWorker& operator=(const ManualWorker&) = delete;

    void post(Lane lane, std::function<void()> job, std::function<void()> done) override
    {
        waiting_.push_back({std::move(job), std::move(done), lane});
        ++posted_;
    }

    std::unique_ptr<Delay> after(std::chrono::milliseconds delay, std::function<void()> elapsed) override
    {
        auto entry = std::make_shared<Entry>(Entry{now_ + delay, std::move(elapsed)});
        delays_.push_back(entry);
        return std::make_unique<Handle>(std::move(entry));
    }

    std::size_t waiting() const { return waiting_.size(); }
    int posted() const { return posted_; }

    /// Runs one waiting job and comes back to its store.
    void finish(std::size_t index = 0)
    {
        const Job job = take(index);
        job.run();
        job.done();
    }

    /// Runs one waiting job; the result calls back.
    std::function<void()> runOnly(std::size_t index = 0)
    {
        const Job job = take(index);
        job.run();
        return job.done;
    }

    /// Finishes jobs in their order until none waits.
    void finishAll()
    {
        while (!waiting_.empty())
            finish();
    }

    /// The same without those of a lane, which still wait.
    void finishAllBut(Lane lane)
    {
        const auto isOther = [lane](const Job& job) { return job.lane != lane; };
        for (auto next = waiting_.begin(); (next = std::ranges::find_if(waiting_, isOther)) != waiting_.end();)
            finish(static_cast<std::size_t>(next - waiting_.begin()));
    }

    void advance(std::chrono::milliseconds time)
    {
        now_ += time;
        std::vector<std::shared_ptr<Entry>> due;
        std::ranges::copy_if(delays_, std::back_inserter(due),
                             [this](const auto& entry) { return entry->due <= now_; });
        std::erase_if(delays_, [this](const auto& entry) { return entry->due <= now_; });
        for (const auto& entry : due) {
            if (entry->elapsed)
                entry->elapsed();
        }
    }

private:
    struct Job {
        std::function<void()> run;
        std::function<void()> done;
        Lane lane;
    };
    struct Entry {
        std::chrono::milliseconds due;
        std::function<void()> elapsed;
    };
    class Handle : public Delay {
    public:
        explicit Handle(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}
        ~Handle() override { entry_->elapsed = nullptr; }

    private:
        std::shared_ptr<Entry> entry_;
    };

    Job take(std::size_t index)
    {
        const auto position = waiting_.begin() + static_cast<std::ptrdiff_t>(index);
        Job job = std::move(*position);
        waiting_.erase(position);
        return job;
    }

    std::deque<Job> waiting_;
    int posted_ = 0;
    std::chrono::milliseconds now_{0};
    std::vector<std::shared_ptr<Entry>> delays_;
};

} // namespace plovik
