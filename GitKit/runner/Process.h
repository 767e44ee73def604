// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitOutput.h"
#include "GitKit/runner/RunContext.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// One program to run. The input must stay valid until the run has ended.
struct ProcessRequest {
    std::filesystem::path executable;   ///< absolute
    std::vector<std::string> arguments; ///< without the program's own name
    std::filesystem::path directory;
    std::vector<std::string> environment;       ///< complete, as NAME=value
    std::optional<std::string_view> input = {}; ///< standard input; absent for the null device
    std::optional<OutputLimit> limit = {}; ///< of standard output; when exceeded, the program is killed with its group
    bool isIdle = false;                   ///< takes the processor and the disk only when nothing else wants them
    bool dropsMiddle = false;  ///< of standard output only the beginning and the end are kept, as of standard error
    std::stop_token stop = {}; ///< asks the program and its group to end, and makes them end two seconds later
    /// Is called with everything that is read, on the calling thread.
    std::function<void(RunListener::Stream, std::string_view)> printed = {};
    /// When it is set, the program finds a further pipe at `traceDescriptor`, and this is called with what it writes there,
    /// on the calling thread. Only runProcess() reads it.
    std::function<void(std::string_view)> traced = {};
};

/// Git takes one digit. Scripts use the low ones for their own files, and 9 for locks.
constexpr int traceDescriptor = 8;

/// Runs a program to its end and returns what it wrote. Blocks the calling thread; any number may run at once.
///
/// The program gets its own session, so that neither it nor its children can reach the application's terminal, and it
/// inherits no descriptors and no signal settings. The run ends when the program has ended and the content of its pipes
/// is read; it does not wait for children that still hold the pipes. A program may end before it has read its input.
/// What it writes to standard error is kept up to some mebibytes, without its middle.
///
/// Throws LaunchError when the program cannot be started.
GitOutput runProcess(const ProcessRequest& request);

/// Asks all programs that this process has started and that still run to end, together with their groups. From now on
/// none can be started. For the end of the process. Any thread.
void endAllPrograms();

} // namespace gitkit
