// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/Process.h"

#include "GitKit/runner/ChildProcess.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/ProcessExchange.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <mutex>
#include <set>
#include <shared_mutex>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

// Some versions of the C library declare this as a C++ function.
extern "C" {
#include <sys/pidfd.h>
}

namespace gitkit {

namespace {

[[noreturn]] void failToStart(const std::string& what, int error)
{
    throw LaunchError(LaunchError::Cause::other, what + ": " + std::generic_category().message(error));
}

/// Returns a descriptor above 2. The child's three streams are put in place one after another, so a pipe with one of
/// their numbers would be overwritten. An application that was started with one of them closed would get such a pipe.
UniqueFd aboveStandard(UniqueFd fd)
{
    if (fd.get() > STDERR_FILENO)
        return fd;
    UniqueFd moved(::fcntl(fd.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (!moved)
        failToStart("Could not make room for a pipe to git", errno);
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
        failToStart("Could not open a pipe to git", errno);
    UniqueFd reading(ends[0]);
    UniqueFd writing(ends[1]);
    return {aboveStandard(std::move(reading)), aboveStandard(std::move(writing))};
}

class FileActions {
public:
    FileActions() { posix_spawn_file_actions_init(&actions_); }
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    void duplicate(const UniqueFd& from, int to) { check(posix_spawn_file_actions_adddup2(&actions_, from.get(), to)); }
    void openNull(int to) { check(posix_spawn_file_actions_addopen(&actions_, to, "/dev/null", O_RDONLY, 0)); }
    /// Needed because libraries may open descriptors without close-on-exec.
    void closeOthers() { check(posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1)); }
    void closeOthersBut(int kept)
    {
        for (int other = STDERR_FILENO + 1; other < kept; ++other)
            check(posix_spawn_file_actions_addclose(&actions_, other));
        check(posix_spawn_file_actions_addclosefrom_np(&actions_, kept + 1));
    }
    void changeDirectory(const std::filesystem::path& directory)
    {
        check(posix_spawn_file_actions_addchdir_np(&actions_, directory.c_str()));
    }
    const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    static void check(int error)
    {
        if (error != 0)
            failToStart("Could not prepare git's start", error);
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

std::vector<char*> pointers(std::vector<std::string>& texts)
{
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

/// Finds out which of program, folder and interpreter is missing, because the kernel has one error number for all.
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
    failToStart("Could not start “" + program + "”", error);
}

/// The child's ends of its streams. This process closes them as soon as the child has them.
struct ChildStreams {
    UniqueFd input;
    UniqueFd output;
    UniqueFd error;
    UniqueFd trace;
};

/// The threads and programs that it starts inherit this. What the system refuses only makes it less considerate.
void makeIdle(pid_t pid)
{
    constexpr int least = 19;
    constexpr int process = 1;     // IOPRIO_WHO_PROCESS, which has no header
    constexpr int idle = 3 << 13U; // IOPRIO_CLASS_IDLE
    static_cast<void>(::setpriority(PRIO_PROCESS, static_cast<id_t>(pid), least));
    static_cast<void>(::syscall(SYS_ioprio_set, process, pid, idle));
}

/// Closes our copies of the child's ends.
pid_t spawn(const ProcessRequest& request, const ChildStreams streams)
{
    FileActions actions;
    if (streams.input)
        actions.duplicate(streams.input, STDIN_FILENO);
    else
        actions.openNull(STDIN_FILENO);
    actions.duplicate(streams.output, STDOUT_FILENO);
    actions.duplicate(streams.error, STDERR_FILENO);
    if (streams.trace) {
        actions.duplicate(streams.trace, traceDescriptor);
        actions.closeOthersBut(traceDescriptor);
    } else {
        actions.closeOthers();
    }
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
    if (request.isIdle)
        makeIdle(pid);
    return pid;
}

/// The programs that were started and not yet reaped. Any thread. Lives as long as the process.
class RunningPrograms {
public:
    static RunningPrograms& all()
    {
        static auto* const all = new RunningPrograms;
        return *all;
    }

    template <typename Start>
    pid_t add(const Start& start)
    {
        const std::shared_lock starting(starting_);
        if (isEnding_)
            throw LaunchError(LaunchError::Cause::other, "The application is ending.");
        const pid_t pid = start();
        const std::scoped_lock lock(mutex_);
        pids_.insert(pid);
        return pid;
    }

    /// To be called before the program is reaped, as its number may then be another one's.
    void remove(pid_t pid)
    {
        const std::scoped_lock lock(mutex_);
        pids_.erase(pid);
    }

    void end()
    {
        const std::scoped_lock lock(starting_, mutex_); // nobody is about to start one
        isEnding_ = true;
        for (const pid_t pid : pids_)
            ::kill(-pid, SIGTERM);
    }

private:
    std::shared_mutex starting_; ///< shared by those who start a program
    bool isEnding_ = false;      ///< guarded by starting_
    std::mutex mutex_;
    std::set<pid_t> pids_; ///< guarded by mutex_
};

/// Waits for a program's end. Returns its status as waitpid() gives it.
int awaitEnd(pid_t pid)
{
    // Waits without reaping first: until then the number stays the program's, so that it can be asked to end.
    siginfo_t ended{};
    while (::waitid(P_PID, static_cast<id_t>(pid), &ended, WEXITED | WNOWAIT) < 0 && errno == EINTR) {
    }
    RunningPrograms::all().remove(pid);
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

} // namespace

void endAllPrograms() { RunningPrograms::all().end(); }

ChildProcess::ChildProcess(const ProcessRequest& request)
{
    Pipe inputPipe;
    if (request.input)
        inputPipe = makePipe();
    Pipe outputPipe = makePipe();
    Pipe errorPipe = makePipe();
    Pipe tracePipe;
    if (request.traced)
        tracePipe = makePipe();
    ChildStreams ends{std::move(inputPipe.reading), std::move(outputPipe.writing), std::move(errorPipe.writing),
                      std::move(tracePipe.writing)};
    pid_ = RunningPrograms::all().add([&] { return spawn(request, std::move(ends)); });
    streams = {std::move(inputPipe.writing), std::move(outputPipe.reading), std::move(errorPipe.reading),
               std::move(tracePipe.reading)};
    ended_ = UniqueFd(::pidfd_open(pid_, 0));
    if (ended_)
        return;
    const int error = errno;
    kill();
    reap();
    failToStart("Could not watch git", error);
}

ChildProcess::~ChildProcess()
{
    if (pid_ < 0)
        return;
    kill();
    reap();
}

void ChildProcess::kill() const { ::kill(-pid_, SIGKILL); }

void ChildProcess::abandon()
{
    kill();
    const pid_t pid = std::exchange(pid_, -1);
    const auto wait = [pid] { awaitEnd(pid); };
    siginfo_t ended{};
    if (::waitid(P_PID, static_cast<id_t>(pid), &ended, WEXITED | WNOWAIT | WNOHANG) != 0 || ended.si_pid == pid) {
        wait();
        return;
    }
    try {
        std::thread(wait).detach();
    } catch (const std::system_error&) {
        wait();
    }
}

void ChildProcess::reap(GitOutput* result)
{
    const int waitStatus = awaitEnd(std::exchange(pid_, -1));
    if (!result)
        return;
    result->signalled = WIFSIGNALED(waitStatus);
    result->status = result->signalled ? 128 + WTERMSIG(waitStatus) : WEXITSTATUS(waitStatus);
}

GitOutput runProcess(const ProcessRequest& request)
{
    GitOutput result;
    ChildProcess child(request);
    const ExchangeEnd end = exchange(request, child.pid(), child.ended(), std::move(child.streams), result);
    result.cut = end == ExchangeEnd::limitPassed;
    // The group keeps its number until its leader is reaped.
    if (end != ExchangeEnd::childEnded)
        child.kill();
    child.reap(&result);
    // A program that succeeded did its work, even if a stop was requested. One that failed counts as stopped.
    result.stopped = end != ExchangeEnd::limitPassed && request.stop.stop_requested() && result.status != 0;
    return result;
}

} // namespace gitkit
