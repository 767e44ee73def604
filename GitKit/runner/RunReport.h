// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/Process.h"
#include "GitKit/runner/RunContext.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <string_view>
#include <utility>

namespace gitkit {

/// Reports one run to a listener. Does nothing without a listener.
class RunReport {
public:
    RunReport(std::shared_ptr<RunListener> listener, const ProcessRequest& request) : listener_(std::move(listener))
    {
        static std::atomic<RunListener::Run> runs = 0;
        if (!listener_)
            return;
        run_ = ++runs;
        listener_->began(run_, request.arguments, request.directory);
    }

    void printed(RunListener::Stream stream, std::string_view bytes) const
    {
        if (listener_)
            listener_->printed(run_, stream, bytes);
    }

    void traced(std::string_view bytes) const
    {
        if (listener_)
            listener_->traced(run_, bytes);
    }

    void ended(RunEnd end) const { ended(std::move(end), Clock::now() - began_); }
    /// `worked` is the time without that in which nobody took what the program printed.
    void ended(RunEnd end, std::chrono::steady_clock::duration worked) const
    {
        if (!listener_)
            return;
        end.duration = std::chrono::duration_cast<std::chrono::milliseconds>(worked);
        listener_->ended(run_, end);
    }

private:
    using Clock = std::chrono::steady_clock;
    std::shared_ptr<RunListener> listener_;
    RunListener::Run run_ = 0;
    Clock::time_point began_ = Clock::now();
};

} // namespace gitkit
