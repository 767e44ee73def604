// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitOutput.h"

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

namespace gitkit {

class RunListener;
struct ProcessRequest;

/// A git process whose output is read in pieces. While nobody reads, the pipe fills up and git waits, so it computes no
/// more than is wanted. Made by GitRunner::stream().
///
/// Any thread, but one at a time. Destroying it ends git at once.
class GitStream {
public:
    /// `command` is git's subcommand. Throws LaunchError when git cannot be started.
    GitStream(std::string command, std::shared_ptr<RunListener> listener, ProcessRequest request);
    ~GitStream();
    GitStream(GitStream&&) noexcept;
    GitStream& operator=(GitStream&&) noexcept;

    using Clock = std::chrono::steady_clock;
    /// Waits for output and appends it to `into`; when `until` passes before any comes, appends nothing. Returns false,
    /// and appends nothing, when git has ended well and everything is read. Throws GitError when it has failed and
    /// RunStopped soon after a stop is requested.
    bool read(std::string& into, Clock::time_point until = Clock::time_point::max());

    /// Writes to git's standard input, which must have been asked for. Blocks while git does not read. What cannot be
    /// written because git has ended is dropped: read() tells why it has.
    void write(std::string_view bytes);
    /// Ends git's standard input.
    void endInput();

private:
    struct Running;
    std::unique_ptr<Running> running_;
};

} // namespace gitkit
