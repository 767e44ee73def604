// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/HookTrace.h"
#include "GitKit/runner/GitRunner.h"
#include "GitKit/runner/Process.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace gitkit {
namespace {

using Clock = std::chrono::steady_clock;

struct Follower : RunListener {
    HookTrace trace;
    std::size_t mostRunning = 0;

    void began(Run, const std::vector<std::string>&, const std::filesystem::path&) override {}
    void printed(Run, Stream, std::string_view) override {}
    void ended(Run, const RunEnd&) override {}
    bool followsPrograms() const override { return true; }
    void traced(Run, std::string_view bytes) override
    {
        for (const char byte : bytes) { // pieces end anywhere
            trace.read({&byte, 1}, Clock::now());
            const auto running = std::ranges::count_if(trace.hooks(), [](const HookRun& hook) { return !hook.took; });
            mostRunning = std::max(mostRunning, static_cast<std::size_t>(running));
        }
    }
    std::vector<std::string> named() const
    {
        std::vector<std::string> names;
        for (const HookRun& hook : trace.hooks())
            names.push_back(hook.name + (hook.took ? " " + std::to_string(hook.status) : " runs"));
        return names;
    }
};

struct HookTracing : testing::Test {
    TestRepository repo;
    std::shared_ptr<Follower> follower = std::make_shared<Follower>();
    GitRunner git{repo.path(), {.listener = follower}};

    void hook(const std::string& path, const std::string& script)
    {
        repo.write(path, "#!/bin/sh\n" + script);
        std::filesystem::permissions(repo / path, std::filesystem::perms::owner_all);
    }
};

using Names = std::vector<std::string>;

TEST_F(HookTracing, NamesTheHooksOfARunAndThoseOfTheGitsInsideIt)
{
    repo.write("a", "1").commit("one").write("a", "2").git({"add", "a"});
    // A name in the message is none of the trace's, and the trace does not get into the files of a script.
    hook(".git/hooks/pre-commit", "exec 3>third 4>fourth; git update-ref refs/heads/x HEAD; exit 0\n");
    hook(".git/hooks/reference-transaction", "exit 0\n");
    hook(".git/hooks/commit-msg", "exit 3\n");
    const std::string message = R"({"event":"child_start","child_class":"hook","hook_name":"no")";
    const GitOutput output = git.output({"commit", "-m", message});
    EXPECT_EQ(output.status, 1);
    EXPECT_EQ(output.errorText(), "");
    const Names names = follower->named();
    EXPECT_EQ(names.front(), "pre-commit 0");
    EXPECT_EQ(names.back(), "commit-msg 3");
    EXPECT_EQ(std::ranges::count(names, "reference-transaction 0"), static_cast<std::ptrdiff_t>(names.size()) - 2);
    EXPECT_GT(names.size(), 2u);
    EXPECT_EQ(follower->mostRunning, 2u);
    EXPECT_EQ(std::filesystem::file_size(repo / "third") + std::filesystem::file_size(repo / "fourth"), 0u);
}

TEST_F(HookTracing, ARunEndsWithGitAlthoughAChildOfItsHookHoldsThePipe)
{
    repo.write("a", "1").commit("one").write("a", "2").git({"add", "a"});
    hook(".git/hooks/post-commit", "sleep 30 >/dev/null 2>&1 &\n");
    const auto begin = Clock::now();
    EXPECT_EQ(git.output({"commit", "-m", "two"}).status, 0);
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(20));
    EXPECT_EQ(follower->named(), Names{"post-commit 0"});
}

TEST(HookTraces, KeepToThePipeOfOneRunAndToTheLastHooks)
{
    const auto openAt8 = [](bool isTraced) {
        ProcessRequest request{.executable = "/bin/sh",
                               .arguments = {"-c", "ls /proc/self/fd | tr '\\n' ' '"},
                               .directory = "/",
                               .environment = {"PATH=/usr/bin:/bin"}};
        if (isTraced)
            request.traced = [](std::string_view) {};
        return runProcess(request).stdoutBytes;
    };
    EXPECT_EQ(openAt8(false), "0 1 2 3 "); // 3 is the folder that is listed
    EXPECT_EQ(openAt8(true), "0 1 2 3 8 ");

    HookTrace trace;
    const std::string start = R"({"event":"child_start","sid":"s","child_id":7,"child_class":"hook","hook_name":"h"})"
                              "\n";
    for (int count = 0; count < 1000; ++count)
        EXPECT_TRUE(trace.read(start, {}));
    EXPECT_LE(trace.hooks().size(), 200u);
    EXPECT_FALSE(trace.read("nonsense\n" + std::string(200'000, 'x') + "\n{\"event\":\"child_exit\"\n", {}));
}

TEST(Processes, WhatIsPrintedAsErrorsWithoutEndTakesNoMoreThanSomeMebibytes)
{
    const GitOutput output = runProcess({.executable = "/bin/sh",
                                         .arguments = {"-c", "(echo first; yes | head -c 200000000; echo last) >&2"},
                                         .directory = "/",
                                         .environment = {"PATH=/usr/bin:/bin"}});
    EXPECT_LE(output.stderrBytes.size(), 65u * 1024 * 1024);
    EXPECT_TRUE(output.stderrBytes.starts_with("first\n") && output.stderrBytes.ends_with("\nlast\n"));
}

} // namespace
} // namespace gitkit
