// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitExecutable.h"
#include "GitKit/runner/GitRunner.h"
#include "GitKit/runner/GitVersion.h"
#include "GitKit/runner/Process.h"
#include "GitKit/runner/Progress.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <future>
#include <thread>
#include <unistd.h>

namespace gitkit {
namespace {

GitOutput shell(const std::string& script, std::optional<std::string_view> input = {},
                const std::filesystem::path& directory = "/")
{
    return runProcess({.executable = "/bin/sh",
                       .arguments = {"-c", script},
                       .directory = directory,
                       .environment = {"PATH=/usr/bin:/bin"},
                       .input = input});
}

bool endsWithin(std::chrono::seconds limit, const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::steady_clock::now() - start < limit;
}

LaunchError launchFailure(const ProcessRequest& request)
{
    try {
        runProcess(request);
    } catch (const LaunchError& error) {
        return error;
    }
    throw std::runtime_error("it was started");
}

TEST(Process, MovesTensOfMegabytesBothWaysAtOnce)
{
    std::string input;
    while (input.size() < 32u * 1024 * 1024)
        input += "all work and no play makes a dull pipe " + std::to_string(input.size()) + "\n";
    const GitOutput output = shell("tee /dev/stderr", input);
    EXPECT_TRUE(output.stdoutBytes == input);
    EXPECT_TRUE(output.stderrBytes == input);
    EXPECT_EQ(output.status, 0);
}

TEST(Process, EndsWithItsProgramAlthoughAGrandchildHoldsThePipes)
{
    GitOutput output;
    EXPECT_TRUE(endsWithin(std::chrono::seconds(20), [&] { output = shell("echo done; sleep 30 & exit 3"); }));
    EXPECT_EQ(output.stdoutBytes, "done\n");
    EXPECT_EQ(output.status, 3);
    // One that goes on writing does not hold the run either.
    EXPECT_TRUE(endsWithin(std::chrono::seconds(20),
                           [&] { output = shell("(exec timeout 30 yes) & exec sleep 0.1", "unread"); }));
}

TEST(Process, TakesAnExitBeforeTheInputWasReadAsAnExit)
{
    const std::string input(4 * 1024 * 1024, 'x');
    const GitOutput output = shell("exec <&-; echo closed; exit 5", input);
    EXPECT_EQ(output.stdoutBytes, "closed\n");
    EXPECT_EQ(output.status, 5);
    sigset_t pending;
    ASSERT_EQ(sigpending(&pending), 0);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
    EXPECT_EQ(shell("cat", "").stdoutBytes, "");
}

TEST(Process, TellsASignalFromAnExit)
{
    const GitOutput killed = shell("kill -TERM $$");
    EXPECT_TRUE(killed.signalled);
    EXPECT_EQ(killed.status, 128 + SIGTERM);
    const GitOutput exited = shell("exit 143");
    EXPECT_FALSE(exited.signalled);
    EXPECT_EQ(exited.status, 143);
}

/// Runs a script and asks for its end as soon as it has printed something.
GitOutput stopped(const std::string& script)
{
    std::stop_source stop;
    return runProcess({.executable = "/bin/sh",
                       .arguments = {"-c", script},
                       .directory = "/",
                       .environment = {"PATH=/usr/bin:/bin"},
                       .stop = stop.get_token(),
                       .printed = [&stop](RunListener::Stream, std::string_view) { stop.request_stop(); }});
}

TEST(Process, EndsWhenItIsAskedToWithAllThatItStarted)
{
    TemporaryFolder folder;
    const std::string pids = (folder.path() / "pids").string();
    // The last child is deaf to a kind word, and all of them hold the pipes.
    const std::string script = "(trap '' TERM; echo $$ >>" + pids + "; sleep 60) & sh -c 'echo $$ >>" + pids +
                               "; exec sleep 60' & while [ $(wc -l <" + pids +
                               ") -lt 2 ]; do :; done; echo ready; wait";
    std::ofstream(pids).flush();
    GitOutput output;
    EXPECT_TRUE(endsWithin(std::chrono::seconds(20), [&] { output = stopped(script); }));
    EXPECT_TRUE(output.stopped && output.signalled);
    std::ifstream lines(pids);
    for (pid_t pid = 0; lines >> pid;)
        EXPECT_TRUE(endsWithin(std::chrono::seconds(10), [pid] {
            while (::kill(pid, 0) == 0)
                std::this_thread::yield();
        })) << pid;

    EXPECT_EQ(stopped("trap 'echo tidied; exit 7' TERM; echo ready; while :; do sleep 0.01; done").stdoutBytes,
              "ready\ntidied\n");
    // What comes to its end all the same has done what it was for.
    EXPECT_FALSE(stopped("trap 'exit 0' TERM; echo ready; while :; do sleep 0.01; done").stopped);
}

TEST(Progress, IsToldApartFromWhatGitHasToSay)
{
    const std::string_view printed =
        "remote: Enumerating objects: 5, done.        \n"
        "remote: Counting objects:  20% (1/5)\rremote: Counting objects: 100% (5/5), done.\n"
        "Receiving objects:  40% (2/5), 1.20 MiB | 3.00 MiB/s\r"
        "remote: Note: 5 reviews wait for you\n"
        "remote: Errors: 12\n"
        "Coverage: 40% (2/5)\n"
        "error: 100% of the hooks declined: ask\n";
    EXPECT_EQ(lastProgress(printed), "Receiving objects:  40% (2/5), 1.20 MiB | 3.00 MiB/s");
    EXPECT_EQ(withoutProgress(printed), "remote: Note: 5 reviews wait for you\nremote: Errors: 12\nCoverage: 40% "
                                        "(2/5)\nerror: 100% of the hooks declined: ask\n");
    EXPECT_EQ(lastProgress("Fetching origin\n"), std::nullopt);
}

TEST(Process, LeaksNoDescriptorIntoItsChildren)
{
    // One of ours without close-on-exec, as a library may open it.
    const int careless = ::open("/dev/null", O_RDONLY);
    const std::string listing = "cat >/dev/null; exec ls /proc/self/fd";
    std::vector<std::future<GitOutput>> children(16);
    for (auto& child : children)
        child = std::async(std::launch::async, [&] { return shell(listing, "in"); });
    for (auto& child : children)
        EXPECT_EQ(child.get().stdoutBytes, "0\n1\n2\n3\n"); // 3 is the folder that is listed
    ::close(careless);
}

TEST(Process, StartsItsProgramAwayFromTheTerminalAndFromOurSignals)
{
    ::signal(SIGUSR1, SIG_IGN);
    sigset_t blocked;
    sigset_t previous;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, &previous);
    const GitOutput ignored = shell("kill -USR1 $$; echo alive");
    const GitOutput held = shell("kill -TERM $$; echo alive");
    const GitOutput streams =
        shell("(: </dev/tty) 2>/dev/null && echo terminal; wc -c; exec cut -d' ' -f6,7 /proc/self/stat");
    pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    ::signal(SIGUSR1, SIG_DFL);
    EXPECT_EQ(ignored.status, 128 + SIGUSR1);
    EXPECT_EQ(held.status, 128 + SIGTERM);
    // No terminal, an empty input, and a session that is not ours, whose terminal is none.
    EXPECT_TRUE(streams.stdoutBytes.starts_with("0\n")) << streams.stdoutBytes;
    EXPECT_TRUE(streams.stdoutBytes.ends_with(" 0\n")) << streams.stdoutBytes;
    EXPECT_FALSE(streams.stdoutBytes.starts_with("0\n" + std::to_string(::getsid(0)) + " "));
}

TEST(Process, SurvivesAnApplicationWithItsOwnStreamsClosed)
{
    // In a child process, for the streams are the whole process's.
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::close(STDIN_FILENO);
        ::close(STDOUT_FILENO);
        ::close(STDERR_FILENO);
        const GitOutput output = shell("cat; echo err >&2", "through");
        ::_exit(output.stdoutBytes == "through" && output.stderrBytes == "err\n" ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(pid, &status, 0), pid);
    EXPECT_EQ(status, 0);
}

TEST(Process, SaysWhyItCouldNotStart)
{
    const TemporaryFolder folder;
    writeFile(folder / "plain", "no program");
    const ProcessRequest sound{
        .executable = "/bin/true", .arguments = {}, .directory = folder.path(), .environment = {}, .input = {}};

    ProcessRequest missing = sound;
    missing.executable = folder / "git";
    EXPECT_EQ(launchFailure(missing).cause(), LaunchError::Cause::gitMissing);
    EXPECT_NE(std::string(launchFailure(missing).what()).find(missing.executable.string()), std::string::npos);

    ProcessRequest gone = sound;
    gone.directory = folder / "gone";
    EXPECT_EQ(launchFailure(gone).cause(), LaunchError::Cause::folderMissing);
    EXPECT_NE(std::string(launchFailure(gone).what()).find("does not exist"), std::string::npos);
    gone.directory = folder / "plain";
    EXPECT_EQ(launchFailure(gone).cause(), LaunchError::Cause::folderMissing);

    ProcessRequest noProgram = sound;
    noProgram.executable = folder / "plain";
    EXPECT_EQ(launchFailure(noProgram).cause(), LaunchError::Cause::notPermitted);

    ProcessRequest tooLong = sound;
    tooLong.arguments.assign(40, std::string(120 * 1024, 'x'));
    EXPECT_NE(std::string(launchFailure(tooLong).what()).find("too long"), std::string::npos);
}

TEST(GitExecutable, TakesTheFirstCandidateThatIsAProgram)
{
    const TemporaryFolder folder;
    writeFile(folder / "text", "");
    std::filesystem::create_directory(folder / "folder");
    EXPECT_EQ(
        GitExecutable::firstExecutable({folder / "none", folder / "text", folder / "folder", "/bin/sh", "/bin/true"}),
        "/bin/sh");
    EXPECT_EQ(GitExecutable::firstExecutable({folder / "none", "/nowhere/git"}), "/nowhere/git");
}

TEST(GitExecutable, RefusesAVersionThatIsTooOldByName)
{
    EXPECT_NO_THROW(GitExecutable::requireSupported());
    EXPECT_NO_THROW(GitExecutable::checkVersion("git version 2.31.0\n"));
    EXPECT_NO_THROW(GitExecutable::checkVersion("git version 3.0.0 (Vendor Git-9)\n"));
    try {
        GitExecutable::checkVersion("git version 2.30.9\n");
        FAIL() << "accepted";
    } catch (const LaunchError& error) {
        EXPECT_EQ(error.cause(), LaunchCause::gitTooOld);
        EXPECT_NE(std::string(error.what()).find("2.31"), std::string::npos);
        EXPECT_NE(std::string(error.what()).find("2.30.9"), std::string::npos);
    }
    EXPECT_THROW(GitExecutable::checkVersion("zsh: command not found"), LaunchError);
}

TEST(GitVersion, IsReadFromWhatGitPrintsAndComparedByItsNumbers)
{
    EXPECT_EQ(GitVersion::parse("git version 2.39.5 (Apple Git-154)\n"), (GitVersion{2, 39}));
    EXPECT_EQ(GitVersion::parse("git version 2.45.GIT"), (GitVersion{2, 45}));
    for (const char* text : {"", "git version", "git version 2", "git version 2.", "git version x.1", "version 2.39"})
        EXPECT_EQ(GitVersion::parse(text), std::nullopt) << text;
    EXPECT_LT((GitVersion{2, 9}), (GitVersion{2, 31}));
    EXPECT_GT((GitVersion{3, 0}), (GitVersion{2, 55}));
    EXPECT_EQ(gitVersion(), GitVersion::parse(GitRunner("/").run({"version"})));
}

TEST(GitVersion, KnowsWhatThisGitCan)
{
    // Git itself is asked for the abilities that show in one command.
    const TestRepository repo;
    const auto offers = [&](const std::vector<std::string>& command) {
        int status = 0;
        const std::string said = runPlainGit(repo.path(), command, status);
        return said.find("is not a git command") == std::string::npos &&
               said.find("unknown option") == std::string::npos && said.find("unknown field") == std::string::npos &&
               said.find("usage: git merge-tree <base") == std::string::npos;
    };
    EXPECT_EQ(can(Ability::runsHooks), offers({"hook", "run", "--ignore-missing", "none"}));
    EXPECT_EQ(can(Ability::stashesStaged), offers({"stash", "push", "--staged"}));
    EXPECT_EQ(can(Ability::mergesInMemory), offers({"merge-tree", "--write-tree", "x", "y"}));
    EXPECT_EQ(can(Ability::fetchesForPrograms), offers({"fetch", "--porcelain", "."}));
    EXPECT_EQ(can(Ability::countsAheadBehind), offers({"for-each-ref", "--format=%(ahead-behind:HEAD)"}));
}

TEST(GitRunner, ReportsWhatGitSaid)
{
    TestRepository repo;
    const GitRunner runner(repo.path());
    const auto failure = [&](const std::vector<std::string>& arguments) {
        try {
            runner.run(arguments);
        } catch (const GitError& error) {
            return error;
        }
        throw std::runtime_error("it succeeded");
    };
    const GitError unknown = failure({"rev-parse", "--verify", "nothing"});
    EXPECT_EQ(unknown.command(), "rev-parse");
    EXPECT_EQ(unknown.status(), 128);
    EXPECT_EQ(unknown.message(), "fatal: Needed a single revision");
    EXPECT_EQ(std::string(unknown.what()), unknown.message());
    // Some failures are told on standard output only.
    EXPECT_EQ(failure({"-c", "alias.tell=!echo ' told ' && exit 4", "tell"}).message(), "told");
    EXPECT_EQ(std::string(failure({"-c", "alias.mute=!exit 9", "mute"}).what()), "git -c failed (exit code 9)");
    EXPECT_EQ(std::string(GitError("", 1, "").what()), "git  failed (exit code 1)");
    EXPECT_EQ(std::string(GitError("push", 128, "").what()), "git push failed (exit code 128)");
    EXPECT_EQ(failure({}).command(), "");

    EXPECT_EQ(runner.bytes({"-c", "alias.latin=!printf '\\344'", "latin"}), "\xE4");
    EXPECT_EQ(runner.run({"-c", "alias.latin=!printf '\\344'", "latin"}), "\xEF\xBF\xBD");
    // A signal is no exit, even where its number is accepted.
    RunOptions lenient;
    for (int status = 0; status < 256; ++status)
        lenient.accepting.push_back(status);
    EXPECT_NO_THROW(runner.run({"rev-parse", "--verify", "nothing"}, lenient));
    writeFile(repo / ".git/die", "");
    EXPECT_THROW(runner.run({"-c", "core.fsmonitor=false", "-c", "alias.die=!kill -KILL $PPID", "die"}, lenient),
                 GitError);
}

} // namespace
} // namespace gitkit
