// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/ai/APIKeyStore.h"
#include "tests/app/EventWait.h"
#include "tests/support/OwnEnvironment.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <qt6keychain/keychain.h>

namespace plovik {
namespace {

using namespace Qt::StringLiterals;
using test::waitUntil;
using enum AIProvider;

/// A bus on which nothing starts by itself.
const QByteArray busConfiguration = R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <policy context="default"><allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/></policy>
</busconfig>)";

/// One session in which keyring daemons, all with the same keyrings, come and go.
class APIKeyStoreTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        session_ = new Session;
        for (const char* folder : {"HOME", "XDG_RUNTIME_DIR", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
            qputenv(folder, session_->home.path().toLocal8Bit());
        QFile configuration(session_->home.filePath(u"bus.conf"_s));
        ASSERT_TRUE(configuration.open(QIODevice::WriteOnly));
        configuration.write(QByteArray(busConfiguration).replace("%1", session_->home.path().toLocal8Bit()));
        configuration.close();
        session_->bus.start(u"dbus-daemon"_s, {u"--config-file="_s + configuration.fileName(), u"--print-address"_s,
                                               u"--nofork"_s, u"--nopidfile"_s});
        if (!userHasAccount())
            return;
        ASSERT_TRUE(waitUntil([] { return session_->bus.canReadLine(); }));
        qputenv("DBUS_SESSION_BUS_ADDRESS", session_->bus.readLine().trimmed());
    }

    static void TearDownTestSuite()
    {
        session_->bus.kill();
        session_->bus.waitForFinished();
        delete session_;
    }

    void SetUp() override
    {
        if (!userHasAccount())
            GTEST_SKIP() << "dbus-daemon serves nobody without an account";
    }

    void TearDown() override { stopDaemon(); }

    void startDaemon(bool isUnlocked)
    {
        QStringList arguments{u"--foreground"_s, u"--components=secrets"_s};
        if (isUnlocked)
            arguments << u"--unlock"_s;
        daemon_.setStandardErrorFile(QProcess::nullDevice());
        daemon_.start(u"gnome-keyring-daemon"_s, arguments);
        daemon_.write("password of this keyring");
        daemon_.closeWriteChannel();
        ASSERT_TRUE(waitUntil([] { return hasService(); })) << daemon_.errorString().toStdString();
    }

    void stopDaemon()
    {
        daemon_.terminate();
        daemon_.waitForFinished();
        EXPECT_TRUE(waitUntil([] { return !hasService(); }));
    }

    static bool hasService()
    {
        QTimer::singleShot(5, [] {}); // the bus tells nobody who has not asked: look again soon
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(u"org.freedesktop.secrets"_s);
    }

    template <typename Value>
    static Value outcome(QCoro::Task<Value> task)
    {
        const auto value = std::make_shared<std::optional<Value>>(); // an answer that comes too late must find it
        auto waiting = std::move(task).then([value](Value given) { *value = std::move(given); });
        EXPECT_TRUE(waitUntil([&] { return value->has_value(); }));
        return value->value_or(Value());
    }

    static std::optional<QString> key(AIProvider provider) { return outcome(apiKeyStore::key(provider)); }
    static bool setKey(AIProvider provider, const QString& key) { return outcome(apiKeyStore::setKey(provider, key)); }

    struct Session {
        QTemporaryDir home;
        QProcess bus;
    };
    static inline Session* session_ = nullptr;
    QProcess daemon_;
};

TEST_F(APIKeyStoreTest, WithoutASecretServiceNothingIsFoundOrSavedAtOnce)
{
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(key(anthropic), std::nullopt);
    EXPECT_FALSE(setKey(anthropic, u"sk-1"_s));
    EXPECT_FALSE(setKey(anthropic, QString()));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
}

TEST_F(APIKeyStoreTest, KeysAreReplacedAndRemovedEachForItself)
{
    startDaemon(true);
    EXPECT_EQ(key(anthropic), std::nullopt);
    EXPECT_TRUE(setKey(anthropic, QString())) << "removing what is not there";

    EXPECT_TRUE(setKey(anthropic, u" \tsk-first\n"_s));
    EXPECT_EQ(key(anthropic), u"sk-first"_s);
    EXPECT_TRUE(setKey(openAI, u"sk-Schlüssel-鍵"_s));
    EXPECT_TRUE(setKey(anthropic, u"sk-second"_s));
    EXPECT_EQ(key(anthropic), u"sk-second"_s);
    EXPECT_TRUE(setKey(openAI, u"  "_s));
    EXPECT_EQ(key(openAI), std::nullopt);
    EXPECT_EQ(key(anthropic), u"sk-second"_s);

    // Nobody waits in between.
    std::vector<QCoro::Task<bool>> hurried;
    for (const QString& text : {u"sk-1"_s, QString(), u"sk-2"_s})
        hurried.push_back(apiKeyStore::setKey(openAI, text));
    EXPECT_EQ(key(openAI), u"sk-2"_s);
    hurried.push_back(apiKeyStore::setKey(openAI, u"sk-3"_s));
    EXPECT_TRUE(setKey(openAI, QString()));
    EXPECT_EQ(key(openAI), std::nullopt);
}

TEST_F(APIKeyStoreTest, BytesThatAreNoTextReadAsNothingUntilTheyAreReplaced)
{
    startDaemon(true);
    EXPECT_EQ(key(openAI), std::nullopt);
    auto* const writing = new QKeychain::WritePasswordJob(u"app.plovik.Plovik.ai"_s);
    writing->setKey(u"openAI"_s);
    writing->setBinaryData("sk-\xff\xfe");
    std::optional<QKeychain::Error> ended;
    QObject::connect(writing, &QKeychain::Job::finished, writing, [&](QKeychain::Job* job) { ended = job->error(); });
    writing->start();
    ASSERT_TRUE(waitUntil([&] { return ended.has_value(); }));
    ASSERT_EQ(*ended, QKeychain::NoError);

    EXPECT_EQ(key(openAI), std::nullopt);
    EXPECT_TRUE(setKey(openAI, u"sk-text"_s));
    EXPECT_EQ(key(openAI), u"sk-text"_s);
    EXPECT_TRUE(setKey(openAI, QString()));
    EXPECT_EQ(key(openAI), std::nullopt);
}

// Here nobody can be asked for the password, which is as if they declined.
TEST_F(APIKeyStoreTest, AKeyringThatStaysLockedGivesNothingAndLosesNothing)
{
    startDaemon(true);
    ASSERT_TRUE(setKey(anthropic, u"sk-locked up"_s));
    stopDaemon();

    startDaemon(false);
    EXPECT_EQ(key(anthropic), std::nullopt);
    EXPECT_FALSE(setKey(anthropic, u"sk-other"_s));
    EXPECT_FALSE(setKey(anthropic, QString())) << "the key is still there";
    stopDaemon();

    startDaemon(true);
    EXPECT_EQ(key(anthropic), u"sk-locked up"_s);
}

} // namespace
} // namespace plovik
