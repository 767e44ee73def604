// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/ProcessExchange.h"

#include "GitKit/runner/GitError.h"
#include "GitKit/runner/PipeSignalBlocker.h"
#include "GitKit/runner/StopWake.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <limits>
#include <poll.h>
#include <sys/ioctl.h>
#include <system_error>

namespace gitkit {

namespace {

/// Of the beginning and of the end of what is printed, each: a hook may print without end.
constexpr std::size_t mostOfEachEnd = 16UL * 1024 * 1024;

[[noreturn]] void failToExchange(const std::string& what, int error)
{
    throw LaunchError(LaunchError::Cause::other, what + ": " + std::generic_category().message(error));
}

/// Makes our end non-blocking. The child's end has an open file description of its own and stays blocking.
void makeNonBlocking(const UniqueFd& fd) { ::fcntl(fd.get(), F_SETFL, ::fcntl(fd.get(), F_GETFL) | O_NONBLOCK); }

/// Our end of one of the child's output streams, and what was read from it.
class OutputStream {
public:
    using Heard = std::function<void(std::string_view)>;

    /// Keeps what is read in `bytes`, at most so much of its beginning and of its end each.
    OutputStream(UniqueFd fd, std::string& bytes, Heard heard, std::size_t mostOfEach)
        : fd_(std::move(fd)), bytes_(bytes), heard_(std::move(heard)), mostOfEach_(mostOfEach)
    {
        makeNonBlocking(fd_);
    }

    int descriptor() const { return fd_.get(); }

    /// Reads once; closes the stream at its end. Returns how many bytes were read.
    std::size_t read()
    {
        std::array<char, 64 * 1024> chunk; // as much as a pipe holds
        const ssize_t count = ::read(fd_.get(), chunk.data(), chunk.size());
        const int error = errno;
        if (count > 0) {
            const std::string_view read(chunk.data(), static_cast<std::size_t>(count));
            keep(read);
            if (heard_)
                heard_(read);
        }
        if (count == 0 || (count < 0 && error != EAGAIN && error != EINTR))
            fd_.reset();
        return count > 0 ? static_cast<std::size_t>(count) : 0;
    }

    /// Reads as many bytes as are in the pipe now, so that a child that goes on writing cannot delay the end.
    void drain()
    {
        int waiting = 0;
        if (!fd_ || ::ioctl(fd_.get(), FIONREAD, &waiting) != 0 || waiting <= 0)
            return;
        for (std::size_t done = 0; fd_ && done < static_cast<std::size_t>(waiting);)
            done += read();
    }

private:
    void keep(std::string_view read)
    {
        bytes_.append(read);
        // Cutting at twice as much is cheaper than cutting at every piece.
        if (bytes_.size() / 4 > mostOfEach_)
            bytes_.erase(mostOfEach_, bytes_.size() - 2 * mostOfEach_);
    }

    UniqueFd fd_;
    std::string& bytes_;
    Heard heard_;
    std::size_t mostOfEach_;
};

/// Our end of the pipe on which git tells what it starts, or nothing.
class TraceStream {
public:
    TraceStream(UniqueFd fd, const std::function<void(std::string_view)>& heard) : fd_(std::move(fd)), heard_(heard)
    {
        if (fd_)
            makeNonBlocking(fd_);
    }

    int descriptor() const { return fd_.get(); }

    void read()
    {
        std::array<char, 16 * 1024> chunk;
        const ssize_t count = ::read(fd_.get(), chunk.data(), chunk.size());
        if (count > 0)
            heard_({chunk.data(), static_cast<std::size_t>(count)});
        else if (count == 0 || (errno != EAGAIN && errno != EINTR))
            fd_.reset();
    }

private:
    UniqueFd fd_;
    const std::function<void(std::string_view)>& heard_;
};

/// Returns whether an output has exceeded its limit. Looks at each byte once.
class LimitWatch {
public:
    LimitWatch(const std::optional<OutputLimit>& limit, const std::string& bytes) : limit_(limit), bytes_(bytes) {}

    bool passed()
    {
        if (!limit_)
            return false;
        lines_ += static_cast<std::size_t>(
            std::count(bytes_.begin() + static_cast<std::ptrdiff_t>(counted_), bytes_.end(), '\n'));
        counted_ = bytes_.size();
        return lines_ > limit_->lines || counted_ > limit_->bytes;
    }

private:
    const std::optional<OutputLimit>& limit_;
    const std::string& bytes_;
    std::size_t counted_ = 0;
    std::size_t lines_ = 0;
};

/// Our end of the child's standard input, and the bytes that are not written yet.
class InputStream {
public:
    InputStream(UniqueFd fd, std::string_view rest) : fd_(std::move(fd)), rest_(rest)
    {
        if (!fd_)
            return;
        makeNonBlocking(fd_);
        if (rest_.empty())
            fd_.reset();
    }

    int descriptor() const { return fd_.get(); }

    /// Writes once. Closes the stream when everything is written and when the reader is gone.
    void write()
    {
        const ssize_t count = ::write(fd_.get(), rest_.data(), rest_.size());
        if (count > 0)
            rest_.remove_prefix(static_cast<std::size_t>(count));
        const bool failed = count < 0 && errno != EAGAIN && errno != EINTR;
        if (failed || rest_.empty())
            fd_.reset();
    }

private:
    UniqueFd fd_;
    std::string_view rest_;
};

/// Counts the time that a program has to end once it was asked to.
class Grace {
public:
    using Clock = std::chrono::steady_clock;

    void begin() { end_ = Clock::now() + std::chrono::seconds(2); }
    bool hasBegun() const { return end_.has_value(); }
    bool isOver() const { return end_ && Clock::now() >= *end_; }

    /// The remaining time for poll, rounded up so that poll does not return too early.
    int timeout() const
    {
        if (!end_)
            return -1;
        const auto rest = std::chrono::ceil<std::chrono::milliseconds>(*end_ - Clock::now());
        return static_cast<int>(std::max<std::chrono::milliseconds::rep>(rest.count(), 0));
    }

private:
    std::optional<Clock::time_point> end_;
};

/// Our ends of all pipes to a child.
struct Exchange {
    const UniqueFd& childEnded;
    const StopWake& stop;
    InputStream& input;
    OutputStream& output;
    OutputStream& error;
    TraceStream& trace;
    LimitWatch& limit;
    Grace grace = {};

    /// Feeds and drains the child. Returns when the child has ended and its pipes are read, when it has printed more
    /// than the limit, or, once a stop was requested, when all holders of its pipes have ended or the time is over.
    ExchangeEnd run()
    {
        bool isRunning = true;
        while (isRunning || (isOpen() && !grace.isOver())) {
            const bool ended = wait(isRunning);
            if (limit.passed())
                return ExchangeEnd::limitPassed;
            if (ended && !grace.hasBegun())
                break;
            isRunning = isRunning && !ended;
            if (grace.isOver())
                break;
        }
        if (grace.hasBegun())
            return ExchangeEnd::stopped;
        output.drain();
        error.drain();
        return limit.passed() ? ExchangeEnd::limitPassed : ExchangeEnd::childEnded;
    }

private:
    bool isOpen() const { return output.descriptor() >= 0 || error.descriptor() >= 0; }

    /// Waits until something happens and handles it. Returns whether the child has ended. Closed streams have negative
    /// descriptors, which poll ignores.
    bool wait(bool isRunning)
    {
        std::array<pollfd, 6> watched{pollfd{isRunning ? childEnded.get() : -1, POLLIN, 0},
                                      pollfd{input.descriptor(), POLLOUT, 0},
                                      pollfd{output.descriptor(), POLLIN, 0},
                                      pollfd{error.descriptor(), POLLIN, 0},
                                      pollfd{grace.hasBegun() ? -1 : stop.descriptor(), POLLIN, 0},
                                      pollfd{trace.descriptor(), POLLIN, 0}};
        if (::poll(watched.data(), watched.size(), grace.timeout()) < 0) {
            if (errno == EINTR)
                return false;
            failToExchange("Could not wait for git", errno);
        }
        if (watched[5].revents != 0)
            trace.read();
        if (watched[0].revents != 0)
            return true;
        if (watched[4].revents != 0)
            grace.begin();
        if (watched[1].revents != 0)
            input.write();
        if (watched[2].revents != 0)
            output.read();
        if (watched[3].revents != 0)
            error.read();
        return false;
    }
};

OutputStream::Heard heard(const ProcessRequest& request, RunListener::Stream stream)
{
    if (!request.printed)
        return {};
    return [&printed = request.printed, stream](std::string_view bytes) { printed(stream, bytes); };
}

} // namespace

ExchangeEnd exchange(const ProcessRequest& request, pid_t group, const UniqueFd& childEnded, ParentStreams streams,
                     GitOutput& result)
{
    const StopWake stop(request.stop, group);
    const PipeSignalBlocker blocker;
    InputStream input(std::move(streams.input), request.input.value_or(std::string_view()));
    OutputStream output(std::move(streams.output), result.stdoutBytes, heard(request, RunListener::Stream::output),
                        request.dropsMiddle ? mostOfEachEnd : std::numeric_limits<std::size_t>::max());
    OutputStream error(std::move(streams.error), result.stderrBytes, heard(request, RunListener::Stream::error),
                       mostOfEachEnd);
    TraceStream trace(std::move(streams.trace), request.traced);
    LimitWatch limit(request.limit, result.stdoutBytes);
    return Exchange{childEnded, stop, input, output, error, trace, limit}.run();
}

} // namespace gitkit
