// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/UniqueFd.h"
#include "GitKit/runner/Process.h"
#include "GitKit/runner/ProcessExchange.h"

#include <sys/types.h>

namespace gitkit {

/// A started program, the leader of its own session and group. One that was not reaped is killed with its group when
/// this is destroyed, which waits for its end.
class ChildProcess {
public:
    /// Starts the program. Throws LaunchError when it cannot be started.
    explicit ChildProcess(const ProcessRequest& request);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t pid() const { return pid_; }
    /// Becomes readable when the program ends.
    const UniqueFd& ended() const { return ended_; }

    /// Kills the program and everything in its group.
    void kill() const;
    /// Kills the program and everything in its group without waiting for its end, even if it hangs in the kernel.
    void abandon();
    /// Waits for the program and writes how it ended into `result`, if there is one.
    void reap(GitOutput* result = nullptr);

    ParentStreams streams; ///< our ends of its pipes

private:
    pid_t pid_ = -1;
    UniqueFd ended_;
};

} // namespace gitkit
