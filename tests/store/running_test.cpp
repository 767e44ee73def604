// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include "GitKit/UniqueFd.h"
#include "app/store/RepositoryStore.h"
#include "app/store/actions/Pushes.h"
#include "app/store/actions/Refs.h"
#include "app/store/actions/Remotes.h"
#include "app/store/actions/Stashes.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <filesystem>
#include <fstream>
#include <future>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>

namespace plovik {
namespace {

struct StoreRunning : testing::Test {
    TestRepository repo;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};

    void load()
    {
        store.snapshot().refresh(RefreshScope::full);
        worker.finishAll();
    }

    void hook(const std::string& name, const std::string& script)
    {
        repo.write(".git/hooks/" + name, "#!/bin/sh\n" + script);
        std::filesystem::permissions(repo / (".git/hooks/" + name), std::filesystem::perms::owner_all);
    }

    void stageSomething()
    {
        repo.write("a", "1").commit("one").write("a", "2").git({"add", "a"});
        load();
        store.draft().setSubject(QStringLiteral("two"));
    }

    CommandLog::Command newest(const std::string& verb) const
    {
        for (const CommandLog::Command& command : store.changes().commandLog().commands()) {
            if (std::ranges::find(command.arguments, verb) != command.arguments.end())
                return command;
        }
        throw std::runtime_error("no " + verb + " in the log");
    }
};

TEST_F(StoreRunning, ACancelledActionEndsWithoutAWordAndKeepsTheMessage)
{
    stageSomething();
    hook("pre-commit", "touch started; exec sleep 60\n");
    const std::string head = repo.head();
    store.draft().commit();
    auto running = std::async(std::launch::async, [this] { return worker.runOnly(); });
    while (!std::filesystem::exists(repo / "started"))
        std::this_thread::yield();
    store.changes().cancelActivity();
    EXPECT_TRUE(store.changes().isCancelling.value());
    running.get()();
    worker.finishAll();
    EXPECT_FALSE(store.changes().activity.value() || store.window().errorMessage.value() ||
                 store.changes().isCancelling.value());
    EXPECT_EQ(store.draft().commitSubject.value(), QStringLiteral("two"));
    EXPECT_EQ(repo.head(), head);
    EXPECT_TRUE(newest("commit").end->stopped);

    // The next one is not cancelled with it.
    std::filesystem::remove(repo / ".git/hooks/pre-commit");
    store.draft().commit();
    worker.finishAll();
    EXPECT_NE(repo.head(), head);
}

TEST_F(StoreRunning, WhatTakesTooLongIsShownAndCanBeCancelledAlsoWhileItWaits)
{
    repo.write("a", "1").write("b", "1").commit("one").write("a", "2").write("b", "2").write("a", "3");
    repo.write(".gitattributes", "a filter=slow\n").write("c", "1").git({"add", "c"});
    const std::string command = "touch started; exec sleep 60";
    store.trust().trust({{.key = "filter.slow.clean", .value = command}});
    load();
    repo.git({"config", "filter.slow.clean", command});
    const auto files = store.snapshot().status.value().files;
    const auto file = [&files](const std::string& path) {
        return *std::ranges::find(files, path, &gitkit::FileChange::path);
    };
    store.staging().stage({file("a")});
    store.staging().stage({file("b")}); // waits
    EXPECT_FALSE(store.changes().activity.value());
    EXPECT_EQ(store.staging().shownStageState(file("b")), gitkit::StageState::full);
    worker.advance(std::chrono::milliseconds(2000));
    EXPECT_EQ(store.staging().shownStageState(file("b")), gitkit::StageState::none) << "it is not staged yet";
    EXPECT_EQ(store.changes().activity.value(), QStringLiteral("Staging…"));
    EXPECT_FALSE(store.changes().offers(Verb::commit));
    EXPECT_EQ(store.changes().running.value().size(), 2U);
    store.changes().cancelActivity(); // the newest, which has not begun
    EXPECT_EQ(store.changes().running.value().size(), 1U);

    auto running = std::async(std::launch::async, [this] { return worker.runOnly(); });
    while (!std::filesystem::exists(repo / "started"))
        std::this_thread::yield();
    store.changes().cancelActivity();
    running.get()();
    repo.git({"config", "--unset", "filter.slow.clean"}); // the status would wait for it, too
    worker.finishAll();
    EXPECT_FALSE(store.changes().activity.value() || store.window().errorMessage.value());
    EXPECT_EQ(repo.read({"diff", "--cached", "--name-only"}), "c");
}

/// A port that takes connections and never says a word.
class SilentServer {
public:
    SilentServer() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        if (::bind(socket_.get(), reinterpret_cast<sockaddr*>(&address), size) != 0 ||
            ::listen(socket_.get(), 4) != 0 ||
            ::getsockname(socket_.get(), reinterpret_cast<sockaddr*>(&address), &size) != 0)
            throw std::runtime_error("no server");
        url_ = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/never.git";
    }
    const std::string& url() const { return url_; }

    /// How many programs were started with the address among their arguments.
    int callers() const
    {
        int count = 0;
        for (const auto& process : std::filesystem::directory_iterator("/proc")) {
            std::ifstream stream(process.path() / "cmdline", std::ios::binary);
            const std::string line(std::istreambuf_iterator<char>(stream), {});
            count += line.find(url_) != std::string::npos ? 1 : 0;
        }
        return count;
    }

private:
    gitkit::UniqueFd socket_;
    std::string url_;
};

TEST_F(StoreRunning, CancellingAFetchThatIsNeverAnsweredLeavesNoProcess)
{
    const SilentServer server;
    repo.git({"remote", "add", "origin", server.url()});
    load();
    actions::fetch(store.actors());
    auto running = std::async(std::launch::async, [this] { return worker.runOnly(); });
    while (server.callers() == 0)
        std::this_thread::yield();
    store.changes().cancelActivity();
    running.get()();
    // What git had started is killed with it, and leaves the table of processes a moment later.
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (server.callers() > 0 && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    EXPECT_EQ(server.callers(), 0);
    worker.finishAll();
    EXPECT_FALSE(store.changes().activity.value() || store.window().errorMessage.value());
}

TEST_F(StoreRunning, AFetchThatHangsKeepsNothingElseFromBeingDone)
{
    stageSomething();
    const SilentServer server;
    repo.git({"remote", "add", "origin", server.url()});
    load();
    actions::fetch(store.actors());
    auto running = std::async(std::launch::async, [this] { return worker.runOnly(); });
    while (server.callers() == 0)
        std::this_thread::yield();
    EXPECT_FALSE(store.changes().offers(Verb::push));
    const std::string before = repo.head();
    store.draft().commit();
    worker.finishAll();
    EXPECT_NE(repo.head(), before) << store.window().errorMessage.value().value_or(QString()).toStdString();
    actions::createBranch(store.actors(), "beside", std::nullopt, gitkit::AfterCreating::checkOut);
    worker.finishAll();
    EXPECT_EQ(repo.read({"branch", "--show-current"}), "beside");
    repo.write("a", "more");
    actions::stashSave(store.actors(), QStringLiteral("mine"), gitkit::UntrackedFiles::leave);
    worker.finishAll();
    EXPECT_EQ(repo.read({"stash", "list", "--format=%gs"}), "On beside: mine");
    EXPECT_TRUE(store.changes().isRunning({Verb::fetch}));
    store.changes().cancelActivity();
    running.get()();
    worker.finishAll();
}

TEST_F(StoreRunning, TheLogHasEveryCommandWithWhatItPrinted)
{
    // More than anybody keeps; the beginning and the end tell.
    stageSomething();
    hook("pre-commit", "echo first\nseq 100000\necho last >&2\nexit 1\n");
    EXPECT_EQ(newest("status").end->status, 0);
    store.draft().commit();
    worker.finishAll();
    const CommandLog::Command commit = newest("commit");
    EXPECT_EQ(commit.end->status, 1);
    EXPECT_EQ(store.window().failure.value().command, commit.number);
    const auto output = store.changes().commandLog().output(commit.number);
    EXPECT_TRUE(output->beginning.starts_with("first\n1\n2\n"));
    EXPECT_TRUE(output->ending.ends_with("100000\nlast\n"));
    EXPECT_GT(output->leftOut, 400'000u);
    EXPECT_LT(output->beginning.size() + output->ending.size(), 100'000u);
    EXPECT_TRUE(store.window().errorMessage.value()->endsWith(QStringLiteral("100000\nlast"))); // whole
    EXPECT_TRUE(store.window().errorMessage.value()->startsWith(QStringLiteral("first\n1\n")));

    const qint64 before = store.changes().commandLog().generation.value();
    QCoreApplication::processEvents();
    EXPECT_EQ(store.changes().commandLog().generation.value(), before + 1); // one for all of it
    EXPECT_FALSE(store.changes().commandLog().output(0));
}

TEST_F(StoreRunning, AHookIsNamedWhileItRunsAndCanBeStoppedAndRunAgainFromTheLog)
{
    stageSomething();
    hook("pre-commit", "echo checking a:1; touch started; exec sleep 60\n");
    const std::string head = repo.head();
    store.draft().commit();
    auto running = std::async(std::launch::async, [this] { return worker.runOnly(); });
    while (!std::filesystem::exists(repo / "started") || !store.changes().hook.value())
        QCoreApplication::processEvents();
    const RunningHook shown = *store.changes().hook.value();
    EXPECT_EQ(shown.name, QStringLiteral("pre-commit"));
    EXPECT_EQ(shown.command, newest("commit").number);
    EXPECT_TRUE(store.changes().isOfRunning(shown.command));
    EXPECT_FALSE(store.changes().isOfRunning(newest("status").number));
    store.changes().cancelChangeOf(shown.command);
    running.get()();
    worker.finishAll();
    EXPECT_FALSE(store.changes().hook.value() || store.window().errorMessage.value());
    EXPECT_EQ(newest("commit").hooks.size(), 1u);
    EXPECT_EQ(store.window().commandWithWays.value(), shown.command);
    EXPECT_EQ(store.window().waysOfCommand().at(0).title, QStringLiteral("Run Again"));

    hook("pre-commit", "exit 0\n");
    store.window().takeWayOfCommand(0);
    worker.finishAll();
    EXPECT_NE(repo.head(), head);
    EXPECT_TRUE(store.draft().commitSubject.value().isEmpty());
    EXPECT_FALSE(store.window().commandWithWays.value());
    EXPECT_EQ(newest("commit").hooks.at(0).status, 0);
}

TEST_F(StoreRunning, TheWaysOnFromAHookThatRefusedStayInTheLogUntilSomethingElseIsDone)
{
    stageSomething();
    hook("pre-commit", "exit 4\n");
    const std::string head = repo.head();
    store.draft().commit();
    worker.finishAll();
    EXPECT_EQ(newest("commit").hooks.at(0).status, 4);
    store.window().dismissError();
    EXPECT_EQ(store.window().commandWithWays.value(), newest("commit").number);
    EXPECT_EQ(store.window().waysOfCommand().at(0).title, QStringLiteral("Commit Without Hooks"));
    store.window().takeWayOfCommand(0);
    worker.finishAll();
    EXPECT_NE(repo.head(), head);
    const std::vector<std::string> arguments = newest("commit").arguments;
    EXPECT_NE(std::ranges::find(arguments, "--no-verify"), arguments.end());
    EXPECT_FALSE(store.window().commandWithWays.value());
}

TEST_F(StoreRunning, WhatTheHooksOfARemoteSayIsInTheLog)
{
    stageSomething();
    TestRepository remote{{"--bare"}};
    repo.git({"remote", "add", "origin", remote.path().string()});
    remote.write("hooks/pre-receive", "#!/bin/sh\necho welcome\n");
    std::filesystem::permissions(remote / "hooks/pre-receive", std::filesystem::perms::owner_all);
    load();
    actions::push(store.actors());
    worker.finishAll();
    const auto output = store.changes().commandLog().output(newest("push").number);
    EXPECT_NE((output->beginning + output->ending).find("remote: welcome"), std::string::npos);
    EXPECT_EQ(newest("push").hooks.at(0).name, "pre-receive");
}

} // namespace
} // namespace plovik
