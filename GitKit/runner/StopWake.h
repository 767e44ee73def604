// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/UniqueFd.h"
#include "GitKit/runner/GitError.h"

#include <cerrno>
#include <optional>
#include <stop_token>
#include <sys/eventfd.h>
#include <system_error>

namespace gitkit {

/// Wakes a poll when any thread requests the stop.
class StopWake {
public:
    /// Throws LaunchError when the system has no descriptor left.
    explicit StopWake(const std::stop_token& stop)
    {
        if (!stop.stop_possible())
            return;
        event_ = UniqueFd(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
        if (!event_)
            throw LaunchError(LaunchError::Cause::other,
                              "Could not prepare git's end: " + std::generic_category().message(errno));
        callback_.emplace(stop, Signal{event_.get()});
    }

    /// Becomes readable with the request; -1, which poll ignores, when none can come.
    int descriptor() const { return event_.get(); }

private:
    struct Signal {
        int event;
        void operator()() const noexcept { ::eventfd_write(event, 1); }
    };

    UniqueFd event_;
    std::optional<std::stop_callback<Signal>> callback_;
};

} // namespace gitkit
