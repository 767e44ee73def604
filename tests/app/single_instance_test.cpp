// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/FileUri.h"
#include "app/services/instance/SingleInstance.h"
#include "tests/app/EventWait.h"
#include "tests/support/OwnEnvironment.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <functional>
#include <latch>

namespace plovik {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using test::waitUntil;
using Folders = std::vector<std::filesystem::path>;

enum class Over { bus, socket };

/// A session of its own, with or without a bus.
class SingleInstanceTest : public testing::TestWithParam<Over> {
protected:
    void SetUp() override
    {
        if (GetParam() == Over::socket)
            return;
        if (!userHasAccount())
            GTEST_SKIP() << "dbus-daemon serves nobody without an account";
        bus_.start(u"dbus-daemon"_s, {u"--session"_s, u"--print-address"_s, u"--nofork"_s});
        ASSERT_TRUE(waitUntil([this] { return bus_.canReadLine(); }));
        qputenv("DBUS_SESSION_BUS_ADDRESS", bus_.readLine().trimmed());
    }

    void TearDown() override
    {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        bus_.kill();
        bus_.waitForFinished();
    }

    std::filesystem::path runtimeFolder() const { return runtime_.path().toStdString(); }

    std::unique_ptr<LaunchMeeting> meeting() const
    {
        return GetParam() == Over::bus ? meetingOnBus() : meetingOnSocket(runtimeFolder());
    }

    SingleInstance instance() const
    {
        std::vector<std::unique_ptr<LaunchMeeting>> meetings;
        meetings.push_back(meetingOnBus());
        meetings.push_back(meetingOnSocket(runtimeFolder()));
        return SingleInstance(std::move(meetings));
    }

    /// Another launch, while this thread runs the first one's event loop.
    bool launchAnother(const Folders& folders)
    {
        bool handed = false;
        const auto launch = onThread([&] { handed = instance().handOver(folders, 5s); });
        EXPECT_TRUE(waitUntil([&] { return launch->isFinished(); }));
        return handed;
    }

    static std::unique_ptr<QThread> onThread(std::function<void()> work)
    {
        std::unique_ptr<QThread> thread(QThread::create(std::move(work)));
        // Wakes the event loop that waits for it.
        QObject::connect(thread.get(), &QThread::finished, qApp, [] {});
        thread->start();
        return thread;
    }

    QProcess bus_;
    QTemporaryDir runtime_;
};

TEST_P(SingleInstanceTest, LaterLaunchesHandOverFoldersOfAnyNameAndTheirActivationToken)
{
    SingleInstance first = instance();
    ASSERT_FALSE(first.handOver({"/tmp"}));
    EXPECT_EQ(first.problem(), QString());

    Folders opened;
    QByteArray token;
    int activated = 0;
    LaunchAction action;
    first.listen({.open =
                      [&](const Folders& folders) {
                          opened.insert(opened.end(), folders.begin(), folders.end());
                          token = qgetenv("XDG_ACTIVATION_TOKEN");
                      },
                  .activate = [&] { activated += 1; },
                  .action = [&](const LaunchAction& asked) { action = asked; }});

    const Folders folders = {"/tmp/plain", "/tmp/Latin-1 \xe9\xff", "/tmp/100%41 #?&;\n\t\"'", "/tmp/\xc3\xa9"};
    qputenv("XDG_ACTIVATION_TOKEN", "token 1/2");
    EXPECT_TRUE(launchAnother(folders));
    EXPECT_TRUE(waitUntil([&] { return opened.size() >= folders.size(); }));
    EXPECT_EQ(opened, folders);
    EXPECT_EQ(token, "token 1/2");
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));

    EXPECT_TRUE(launchAnother({}));
    EXPECT_TRUE(waitUntil([&] { return activated == 1; }));

    for (const LaunchAction& asked :
         {LaunchAction{.name = "name of an action"}, LaunchAction{"clone", "https://a b\xe9", {"/tmp/caf\xe9"}}})
    {
        const auto launch = onThread([&] { EXPECT_TRUE(instance().handOverAction(asked, 5s)); });
        EXPECT_TRUE(waitUntil([&] { return action == asked; }));
        EXPECT_TRUE(launch->wait(10'000));
    }
    EXPECT_EQ(activated, 1);
}

TEST_P(SingleInstanceTest, RunningApplicationThatHangsDelaysALaunchOnlyShortly)
{
    SingleInstance hung = instance();
    ASSERT_FALSE(hung.handOver({}));
    // Nobody runs the first one's event loop here.
    SingleInstance second = instance();
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(second.handOver({"/tmp"}, 200ms));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
    EXPECT_NE(second.problem(), QString());

    // What it was handed it opens when it comes round, even before it listened.
    int opened = 0;
    hung.listen({.open = [&](const Folders&) { opened += 1; }, .activate = [] {}});
    EXPECT_TRUE(waitUntil([&] { return opened == 1; }));
}

TEST_P(SingleInstanceTest, OfManyLaunchesAtOnceOneIsFirstAndItsEndMakesRoom)
{
    constexpr int launches = 8;
    std::atomic<int> first = 0;
    std::atomic<int> taken = 0;
    std::latch allClaimed(launches);
    std::vector<std::unique_ptr<QThread>> threads;
    for (int i = 0; i < launches; ++i) {
        threads.push_back(onThread([&] {
            const auto one = meeting();
            const auto claim = one->claim([](const LaunchRequest&) {});
            first += claim == LaunchMeeting::Claim::first;
            taken += claim == LaunchMeeting::Claim::taken;
            allClaimed.arrive_and_wait();
        }));
    }
    for (const auto& thread : threads)
        ASSERT_TRUE(thread->wait(10'000));
    EXPECT_EQ(first, 1);
    EXPECT_EQ(taken, launches - 1);

    // As a crash leaves it behind.
    std::ofstream(runtimeFolder() / "app.plovik.Plovik.socket") << "stale";
    // The bus hears of the end in its own time.
    auto claim = LaunchMeeting::Claim::taken;
    for (const QDeadlineTimer deadline(5s); claim == LaunchMeeting::Claim::taken && !deadline.hasExpired();)
        claim = meeting()->claim([](const LaunchRequest&) {});
    EXPECT_EQ(claim, LaunchMeeting::Claim::first);
}

INSTANTIATE_TEST_SUITE_P(Session, SingleInstanceTest, testing::Values(Over::bus, Over::socket),
                         [](const auto& info) { return info.param == Over::bus ? "withBus" : "withoutBus"; });

TEST(FileUri, RefusesWhatIsNoFileHere)
{
    EXPECT_EQ(pathOfFileUri("file://localhost/a%20b"), "/a b");
    for (const char* uri :
         {"http://x/y", "file://host/a", "file:///a%4", "file:///a%zz", "file:///a%00b", "/a", "file://"})
        EXPECT_EQ(pathOfFileUri(uri), std::nullopt) << uri;
}

} // namespace
} // namespace plovik
