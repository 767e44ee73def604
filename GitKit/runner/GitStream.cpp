// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/GitStream.h"

#include "GitKit/runner/ChildProcess.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitMessages.h"
#include "GitKit/runner/PipeSignalBlocker.h"
#include "GitKit/runner/RunReport.h"
#include "GitKit/runner/StopWake.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <poll.h>
#include <sys/ioctl.h>
#include <system_error>
#include <utility>

namespace gitkit {

namespace {

/// As much as a pipe holds.
constexpr std::size_t pieceSize = 64UL * 1024;
/// What git says in a failure fits many times.
constexpr std::size_t mostError = 1024UL * 1024;

/// Reads once and appends it. Returns how much was read; closes the descriptor at the end of the stream.
std::size_t readInto(UniqueFd& fd, std::string& into)
{
    std::array<char, pieceSize> piece;
    const ssize_t count = ::read(fd.get(), piece.data(), piece.size());
    if (count > 0) {
        into.append(piece.data(), static_cast<std::size_t>(count));
        return static_cast<std::size_t>(count);
    }
    if (count == 0 || errno != EINTR)
        fd.reset();
    return 0;
}

bool holdsBytes(const UniqueFd& fd)
{
    int waiting = 0;
    return fd && ::ioctl(fd.get(), FIONREAD, &waiting) == 0 && waiting > 0;
}

/// Returns the milliseconds until then for poll(), which waits without end for a negative number.
int timeLeft(GitStream::Clock::time_point until)
{
    if (until == GitStream::Clock::time_point::max())
        return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - GitStream::Clock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, std::numeric_limits<int>::max()));
}

std::unique_ptr<ChildProcess> started(const ProcessRequest& request, const RunReport& report)
{
    try {
        return std::make_unique<ChildProcess>(request);
    } catch (const std::exception& failure) {
        report.ended({.problem = failure.what()});
        throw;
    }
}

} // namespace

struct GitStream::Running {
    std::string command;
    ProcessRequest request;
    RunReport report;
    std::unique_ptr<ChildProcess> child;
    std::optional<StopWake> stop; ///< until the child is reaped
    GitOutput output = {};        ///< without what was handed on
    std::chrono::steady_clock::duration worked{0};
    bool hasEnded = false;

    Running(std::string name, std::shared_ptr<RunListener> listener, ProcessRequest asked)
        : command(std::move(name)), request(std::move(asked)), report(std::move(listener), request),
          child(started(request, report))
    {
        stop.emplace(request.stop, child->pid());
    }

    ~Running()
    {
        if (hasEnded)
            return;
        stop.reset();
        child->abandon();
        const bool isStopped = request.stop.stop_requested();
        report.ended({.stopped = isStopped, .cut = !isStopped}, worked);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    /// Ends the run after git has ended.
    void finish()
    {
        while (holdsBytes(child->streams.error) && readInto(child->streams.error, output.stderrBytes) > 0) {
        }
        stop.reset();
        child->reap(&output);
        hasEnded = true;
        report.printed(RunListener::Stream::error, output.stderrBytes);
        report.ended({output.status, output.signalled, false, false}, worked);
    }
};

/// Adds the time until its end to a sum.
class Stopwatch {
public:
    explicit Stopwatch(std::chrono::steady_clock::duration& sum) : sum_(sum) {}
    ~Stopwatch() { stop(); }
    Stopwatch(const Stopwatch&) = delete;
    Stopwatch& operator=(const Stopwatch&) = delete;

    void stop()
    {
        const auto now = std::chrono::steady_clock::now();
        sum_ += now - std::exchange(began_, now);
    }

private:
    std::chrono::steady_clock::duration& sum_;
    std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
};

GitStream::GitStream(std::string command, std::shared_ptr<RunListener> listener, ProcessRequest request)
    : running_(std::make_unique<Running>(std::move(command), std::move(listener), std::move(request)))
{}

GitStream::~GitStream() = default;
GitStream::GitStream(GitStream&&) noexcept = default;
GitStream& GitStream::operator=(GitStream&&) noexcept = default;

void GitStream::write(std::string_view bytes)
{
    const PipeSignalBlocker blocker;
    UniqueFd& input = running_->child->streams.input;
    while (!bytes.empty() && input) {
        const ssize_t count = ::write(input.get(), bytes.data(), bytes.size());
        if (count >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            input.reset();
    }
}

void GitStream::endInput() { running_->child->streams.input.reset(); }

bool GitStream::read(std::string& into, Clock::time_point until)
{
    Running& run = *running_;
    Stopwatch watch(run.worked);
    ParentStreams& streams = run.child->streams;
    while (!run.hasEnded) {
        if (run.request.stop.stop_requested())
            throw RunStopped();
        std::array<pollfd, 4> watched{pollfd{run.child->ended().get(), POLLIN, 0},
                                      pollfd{streams.output.get(), POLLIN, 0}, pollfd{streams.error.get(), POLLIN, 0},
                                      pollfd{run.stop->descriptor(), POLLIN, 0}};
        const int ready = ::poll(watched.data(), watched.size(), timeLeft(until));
        if (ready == 0 && Clock::now() >= until)
            return true;
        if (ready < 0) {
            if (errno == EINTR)
                continue;
            throw LaunchError(LaunchError::Cause::other,
                              "Could not wait for git: " + std::generic_category().message(errno));
        }
        if (watched[3].revents != 0)
            continue;
        if (watched[2].revents != 0) {
            readInto(streams.error, run.output.stderrBytes);
            if (run.output.stderrBytes.size() > mostError)
                run.output.stderrBytes.resize(mostError);
        }
        // What git's children print after its end is not waited for.
        if (watched[1].revents != 0 && (watched[0].revents == 0 || holdsBytes(streams.output))) {
            const std::size_t before = into.size();
            if (readInto(streams.output, into) > 0) {
                run.report.printed(RunListener::Stream::output, std::string_view(into).substr(before));
                return true;
            }
        } else if (watched[0].revents != 0) {
            watch.stop();
            run.finish();
        }
    }
    if (run.output.signalled || run.output.status != 0)
        throw failureOf(run.command, run.output);
    return false;
}

} // namespace gitkit
