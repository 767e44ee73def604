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

/// One program to run. Views must stay valid for the run.
struct ProcessRequest {
    std::filesystem::path executable;   ///< absolute
    std::vector<std::string> arguments; ///< without the program's own name
    std::filesystem::path directory;
    std::vector<std::string> environment;       ///< the whole of it, as NAME=value
    std::optional<std::string_view> input = {}; ///< standard input; the null device without
    std::optional<OutputLimit> limit = {};      ///< of standard output; past it the program is killed with its group
    std::stop_token stop = {}; ///< asks the program and its group to end, and makes them end two seconds later
    /// Hears of what is printed as it is read, on the calling thread.
    std::function<void(RunListener::Stream, std::string_view)> printed = {};
};

/// Runs a program to its end and returns what it wrote. Blocks the calling thread; any number may run at once.
///
/// The program gets a session of its own, so that neither it nor its children can reach the terminal that the
/// application was started from, and none of the application's descriptors or signal settings. The run ends when the
/// program itself has ended: what is in the pipes then is read, and children that still hold them are not waited for.
/// A program that ends before it has read its input has simply ended.
///
/// Throws LaunchError when the program cannot be started.
GitOutput runProcess(const ProcessRequest& request);

} // namespace gitkit
