// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cerrno>
#include <csignal>
#include <ctime>

namespace gitkit {

/// Blocks SIGPIPE in this thread while it writes to a program that may have ended, and removes the signal that such a
/// write raised. Does not touch other threads or a SIGPIPE that was pending before.
class PipeSignalBlocker {
public:
    PipeSignalBlocker()
    {
        sigemptyset(&pipeSignal_);
        sigaddset(&pipeSignal_, SIGPIPE);
        sigset_t pending;
        sigemptyset(&pending);
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &pipeSignal_, &previous_);
    }

    ~PipeSignalBlocker()
    {
        const timespec atOnce{};
        while (!wasPending_ && sigtimedwait(&pipeSignal_, nullptr, &atOnce) < 0 && errno == EINTR) {
        }
        pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
    }

    PipeSignalBlocker(const PipeSignalBlocker&) = delete;
    PipeSignalBlocker& operator=(const PipeSignalBlocker&) = delete;

private:
    sigset_t pipeSignal_{};
    sigset_t previous_{};
    bool wasPending_ = false;
};

} // namespace gitkit
