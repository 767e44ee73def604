// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/UniqueFd.h"
#include "GitKit/runner/GitError.h"

#include <cerrno>
#include <csignal>
#include <optional>
#include <stop_token>
#include <sys/eventfd.h>
#include <sys/types.h>
#include <system_error>

namespace gitkit {

/// Asks a program to end when any thread requests the stop, and wakes the poll that follows it. The program is asked on
/// the thread that requests, so that it ends even if the application does before the poll has woken.
class StopWake {
public:
    /// `group` is the program's, which must not be reaped while this lives. Throws LaunchError when the system has no
    /// descriptor left.
    StopWake(const std::stop_token& stop, pid_t group)
    {
        if (!stop.stop_possible())
            return;
        event_ = UniqueFd(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
        if (!event_)
            throw LaunchError(LaunchError::Cause::other,
                              "Could not prepare git's end: " + std::generic_category().message(errno));
        callback_.emplace(stop, Signal{event_.get(), group});
    }

    /// Becomes readable with the request; -1, which poll ignores, when none can come.
    int descriptor() const { return event_.get(); }

private:
    struct Signal {
        int event;
        pid_t group;
        void operator()() const noexcept
        {
            ::kill(-group, SIGTERM);
            ::eventfd_write(event, 1);
        }
    };

    UniqueFd event_;
    std::optional<std::stop_callback<Signal>> callback_;
};

} // namespace gitkit
