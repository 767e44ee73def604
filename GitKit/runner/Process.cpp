// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/Process.h"

#include "GitKit/runner/GitError.h"
#include "GitKit/runner/UniqueFd.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <system_error>

// The C library's own header declares this as a C++ function in some versions.
extern "C" {
#include <sys/pidfd.h>
}

namespace gitkit {

namespace {

[[noreturn]] void fail(const std::string& what, int error)
{
    throw LaunchError(LaunchError::Cause::other, what + ": " + std::generic_category().message(error));
}

/// Keeps SIGPIPE from this thread while it writes to a program that may be gone, and takes away the one that such a
/// write raised. Other threads, and a SIGPIPE that was pending before, are left alone.
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

/// A descriptor that is none of 0, 1 and 2. The child's three are put in place one after another, and an application
/// that was started with one of them closed would otherwise overwrite a pipe before it is used.
UniqueFd aboveStandard(UniqueFd fd)
{
    if (fd.get() > STDERR_FILENO)
        return fd;
    UniqueFd moved(::fcntl(fd.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!moved)
        fail("Could not make room for a pipe to git", errno);
    return moved;
}

struct Pipe {
    UniqueFd reading;
    UniqueFd writing;
};

Pipe makePipe()
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        fail("Could not open a pipe to git", errno);
    UniqueFd reading(ends[0]);
    UniqueFd writing(ends[1]);
    return {aboveStandard(std::move(reading)), aboveStandard(std::move(writing))};
}

/// Only our end: the child's is a description of its own and stays as programs expect it.
void makeNonBlocking(const UniqueFd& fd) { ::fcntl(fd.get(), F_SETFL, ::fcntl(fd.get(), F_GETFL) | O_NONBLOCK); }

class FileActions {
public:
    FileActions() { posix_spawn_file_actions_init(&actions_); }
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    void duplicate(const UniqueFd& from, int to) { check(posix_spawn_file_actions_adddup2(&actions_, from.get(), to)); }
    void openNull(int to) { check(posix_spawn_file_actions_addopen(&actions_, to, "/dev/null", O_RDONLY, 0)); }
    /// Close-on-exec does not bind libraries that open descriptors of their own.
    void closeOthers() { check(posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1)); }
    void changeDirectory(const std::filesystem::path& directory)
    {
        check(posix_spawn_file_actions_addchdir_np(&actions_, directory.c_str()));
    }
    const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    static void check(int error)
    {
        if (error != 0)
            fail("Could not prepare git's start", error);
    }

    posix_spawn_file_actions_t actions_{};
};

class Attributes {
public:
    Attributes()
    {
        posix_spawnattr_init(&attributes_);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes_, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes_, &signals);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~Attributes() { posix_spawnattr_destroy(&attributes_); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    const posix_spawnattr_t* get() const { return &attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

/// A started child. One that was not reaped, because reading it failed half-way, is killed with its group.
class Child {
public:
    explicit Child(pid_t pid) : pid_(pid) {}
    ~Child()
    {
        if (pid_ < 0)
            return;
        kill();
        reap();
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    pid_t pid() const { return pid_; }

    void kill() const { ::kill(-pid_, SIGKILL); }

    /// Waits for the child and returns its wait status.
    int reap()
    {
        int status = 0;
        while (::waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
        }
        pid_ = -1;
        return status;
    }

private:
    pid_t pid_;
};

std::vector<char*> pointers(std::vector<std::string>& texts)
{
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

/// The kernel gives one number for a missing program, a missing folder and a missing interpreter; a person needs to
/// know which.
[[noreturn]] void throwLaunchFailure(const ProcessRequest& request, int error)
{
    using Cause = LaunchError::Cause;
    const std::string folder = repairedUtf8(request.directory.string());
    const std::string program = repairedUtf8(request.executable.string());
    std::error_code ignored;
    const auto folderStatus = std::filesystem::status(request.directory, ignored);
    if (folderStatus.type() == std::filesystem::file_type::not_found)
        throw LaunchError(Cause::folderMissing, "The folder “" + folder + "” does not exist any more.");
    if (std::filesystem::exists(folderStatus) && !std::filesystem::is_directory(folderStatus))
        throw LaunchError(Cause::folderMissing, "“" + folder + "” is not a folder.");
    if (::access(request.directory.c_str(), X_OK) != 0)
        throw LaunchError(Cause::notPermitted, "You do not have permission to open the folder “" + folder + "”.");
    if (error == ENOENT || error == ENOTDIR)
        throw LaunchError(Cause::gitMissing, "Git was not found at “" + program + "”. Install git and try again.");
    if (error == EACCES)
        throw LaunchError(Cause::notPermitted, "You do not have permission to run “" + program + "”.");
    if (error == E2BIG)
        throw LaunchError(Cause::other, "The command is too long for git to be started with it.");
    fail("Could not start “" + program + "”", error);
}

/// The child's ends of its three streams; closed in this process as soon as the child has them.
struct ChildStreams {
    UniqueFd input;
    UniqueFd output;
    UniqueFd error;
};

pid_t spawn(const ProcessRequest& request, const ChildStreams& streams)
{
    FileActions actions;
    if (streams.input)
        actions.duplicate(streams.input, STDIN_FILENO);
    else
        actions.openNull(STDIN_FILENO);
    actions.duplicate(streams.output, STDOUT_FILENO);
    actions.duplicate(streams.error, STDERR_FILENO);
    actions.closeOthers();
    actions.changeDirectory(request.directory);

    std::vector<std::string> arguments{request.executable.string()};
    arguments.insert(arguments.end(), request.arguments.begin(), request.arguments.end());
    std::vector<std::string> environment = request.environment;
    const Attributes attributes;
    pid_t pid = -1;
    const int error = ::posix_spawn(&pid, request.executable.c_str(), actions.get(), attributes.get(),
                                    pointers(arguments).data(), pointers(environment).data());
    if (error != 0)
        throwLaunchFailure(request, error);
    return pid;
}

/// Our end of one of the child's output streams, and what came out of it.
class OutputStream {
public:
    OutputStream(UniqueFd fd, std::string& bytes) : fd_(std::move(fd)), bytes_(bytes) { makeNonBlocking(fd_); }

    int descriptor() const { return fd_.get(); }

    /// Reads once; closes the stream at its end.
    void read()
    {
        std::array<char, 64 * 1024> chunk; // as much as a pipe holds
        const ssize_t count = ::read(fd_.get(), chunk.data(), chunk.size());
        const int error = errno;
        if (count > 0)
            bytes_.append(chunk.data(), static_cast<std::size_t>(count));
        if (count == 0 || (count < 0 && error != EAGAIN && error != EINTR))
            fd_.reset();
    }

    /// Reads what is in the pipe now. A child that goes on writing cannot hold the run: what it adds is not counted.
    void drain()
    {
        int waiting = 0;
        if (!fd_ || ::ioctl(fd_.get(), FIONREAD, &waiting) != 0 || waiting <= 0)
            return;
        const std::size_t end = bytes_.size() + static_cast<std::size_t>(waiting);
        while (fd_ && bytes_.size() < end)
            read();
    }

private:
    UniqueFd fd_;
    std::string& bytes_;
};

/// Whether an output has grown past its limit. Looks at each byte once.
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

/// Our end of the child's standard input, and what it has not taken yet.
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

    /// Writes once; closes the stream when all is written or when nobody reads it any more.
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

enum class ExchangeEnd { childEnded, limitPassed };

/// Feeds and drains the child until it has ended, then takes what is left in its pipes; or until it has printed more
/// than is wanted.
ExchangeEnd exchange(const UniqueFd& childEnded, InputStream& input, OutputStream& output, OutputStream& error,
                     LimitWatch& limit)
{
    for (;;) {
        // poll passes over entries whose descriptor is negative, as closed streams' are.
        std::array<pollfd, 4> watched{pollfd{childEnded.get(), POLLIN, 0}, pollfd{input.descriptor(), POLLOUT, 0},
                                      pollfd{output.descriptor(), POLLIN, 0}, pollfd{error.descriptor(), POLLIN, 0}};
        if (::poll(watched.data(), watched.size(), -1) < 0) {
            if (errno == EINTR)
                continue;
            fail("Could not wait for git", errno);
        }
        if (watched[0].revents != 0)
            break;
        if (watched[1].revents != 0)
            input.write();
        if (watched[2].revents != 0)
            output.read();
        if (watched[3].revents != 0)
            error.read();
        if (limit.passed())
            return ExchangeEnd::limitPassed;
    }
    output.drain();
    error.drain();
    return limit.passed() ? ExchangeEnd::limitPassed : ExchangeEnd::childEnded;
}

} // namespace

GitOutput runProcess(const ProcessRequest& request)
{
    GitOutput result;
    Pipe inputPipe;
    if (request.input)
        inputPipe = makePipe();
    Pipe outputPipe = makePipe();
    Pipe errorPipe = makePipe();

    ChildStreams streams{std::move(inputPipe.reading), std::move(outputPipe.writing), std::move(errorPipe.writing)};
    Child child(spawn(request, streams));
    streams = {};

    const UniqueFd childEnded(::pidfd_open(child.pid(), 0));
    if (!childEnded)
        fail("Could not watch git", errno);
    {
        const PipeSignalBlocker blocker;
        InputStream input(std::move(inputPipe.writing), request.input.value_or(std::string_view()));
        OutputStream output(std::move(outputPipe.reading), result.stdoutBytes);
        OutputStream error(std::move(errorPipe.reading), result.stderrBytes);
        LimitWatch limit(request.limit, result.stdoutBytes);
        result.cut = exchange(childEnded, input, output, error, limit) == ExchangeEnd::limitPassed;
    }
    if (result.cut)
        child.kill();
    const int waitStatus = child.reap();
    result.signalled = WIFSIGNALED(waitStatus);
    result.status = result.signalled ? 128 + WTERMSIG(waitStatus) : WEXITSTATUS(waitStatus);
    return result;
}

} // namespace gitkit
