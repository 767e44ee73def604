// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/GitExecutable.h"
#include "app/shell/LaunchOptions.h"
#include "tests/app/EventWait.h"
#include "tests/support/OwnEnvironment.h"
#include "tests/support/ProcessesIn.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestRepository.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>

#include <gtest/gtest.h>

#include <csignal>

namespace plovik {
namespace {

using namespace Qt::StringLiterals;
using test::waitUntil;

QString contentsOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

QStringList valuesOf(const QString& key, const QString& text)
{
    QStringList values;
    for (const QString& line : text.split(u'\n')) {
        if (line.startsWith(key + u'='))
            values.append(line.mid(key.size() + 1));
    }
    return values;
}

TEST(DesktopEntry, StartsTheApplicationWithWhatItUnderstands)
{
    const QString entry = contentsOf(QStringLiteral(PLOVIK_DESKTOP_ENTRY));
    const QStringList commands = valuesOf(u"Exec"_s, entry);
    ASSERT_EQ(commands.size(), 1 + valuesOf(u"Actions"_s, entry).value(0).count(u';'));
    for (const QString& command : commands) {
        QList<QByteArray> words = command.toUtf8().replace("%F", "/tmp").split(' ');
        EXPECT_EQ(words.takeFirst(), "plovik-app");
        std::vector<char*> arguments;
        for (QByteArray& word : words)
            arguments.push_back(word.data());
        const auto parsed = parseLaunchOptions(arguments);
        const auto* const options = std::get_if<LaunchOptions>(&parsed);
        ASSERT_TRUE(options) << command.toStdString();
        if (!options->action.name.empty())
            EXPECT_TRUE(entry.contains(u"[Desktop Action "_s + QString::fromStdString(options->action.name) + u']'));
    }
}

/// A session of its own, in which the application runs as it was built here.
class Session : public testing::Test {
protected:
    QProcessEnvironment environment() const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_DATA_DIRS"_s, session_.filePath(u"share"_s));
        environment.insert(u"XDG_DATA_HOME"_s, session_.filePath(u"data"_s));
        environment.insert(u"XDG_CONFIG_HOME"_s, session_.filePath(u"config"_s));
        environment.insert(u"XDG_RUNTIME_DIR"_s, session_.path());
        environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        environment.remove(u"DBUS_SESSION_BUS_ADDRESS"_s);
        return environment;
    }

    /// The stored list of repositories, the latest first, as the settings file has it.
    QString recent() const
    {
        QFile file(session_.filePath(u"config/Plovik/Plovik.ini"_s));
        const QString text = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        return valuesOf(u"recentRepositories"_s, text).value(0);
    }

    bool opened(const TestRepository& repository)
    {
        QTimer wakes;
        wakes.start(std::chrono::milliseconds(20));
        const QString path = QString::fromStdString(repository.path().string());
        return waitUntil([&] { return recent().startsWith(path); }, std::chrono::seconds(60));
    }

    QTemporaryDir session_;
};

TEST_F(Session, WithoutABusLaterLaunchesOpenInTheFirstProcess)
{
    const TestRepository one;
    const TestRepository other;
    QProcess first;
    QProcess second;
    const auto launch = [this](QProcess& process, const TestRepository& repository) {
        process.setProcessEnvironment(environment());
        process.start(QStringLiteral(PLOVIK_APPLICATION), {QString::fromStdString(repository.path().string())});
    };
    launch(first, one);
    EXPECT_TRUE(opened(one)) << recent().toStdString();
    launch(second, other);
    EXPECT_TRUE(opened(other)) << recent().toStdString();
    EXPECT_TRUE(waitUntil([&] { return second.state() == QProcess::NotRunning; }));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_EQ(first.state(), QProcess::Running);
    first.kill();
    first.waitForFinished();
}

TEST_F(Session, AskedToEndTheApplicationLeavesNoGitBehind)
{
    const TestRepository repo;
    const std::filesystem::path git = session_.filePath(u"git"_s).toStdString();
    writeFile(git, "#!/bin/sh\ncase \" $* \" in *' status '* | *' show-ref '*) exec sleep 600 ;; esac\nexec " +
                       gitkit::GitExecutable::path().string() + " \"$@\"\n");
    std::filesystem::permissions(git, std::filesystem::perms::owner_all);
    QProcessEnvironment slow = environment();
    slow.insert(u"PLOVIK_TEST_GIT"_s, QString::fromStdString(git.string()));
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
        QProcess application;
        application.setProcessEnvironment(slow);
        application.start(QStringLiteral(PLOVIK_APPLICATION), {QString::fromStdString(repo.path().string())});
        QTimer wakes;
        wakes.start(std::chrono::milliseconds(20));
        EXPECT_TRUE(waitUntil([&] { return processesIn(repo.path()) >= 2; }, std::chrono::seconds(60)));
        ::kill(static_cast<pid_t>(application.processId()), signal);
        EXPECT_TRUE(application.waitForFinished(10'000));
        EXPECT_EQ(application.exitStatus(), QProcess::NormalExit);
        EXPECT_TRUE(haveAllEndedIn(repo.path(), std::chrono::seconds(1)));
    }
}

/// A session whose bus knows the installed service.
class BusActivation : public Session {
protected:
    void SetUp() override
    {
        if (!userHasAccount())
            GTEST_SKIP() << "dbus-daemon serves nobody without an account";
        QString service = contentsOf(QStringLiteral(PLOVIK_SERVICE_FILE));
        const QString installed = valuesOf(u"Exec"_s, service).value(0);
        service.replace(u"Exec="_s + installed, QStringLiteral("Exec=\"" PLOVIK_APPLICATION "\""));
        QDir(session_.path()).mkpath(u"share/dbus-1/services"_s);
        QFile file(session_.filePath(u"share/dbus-1/services/app.plovik.Plovik.service"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(service.toUtf8());
        file.close();

        daemon_.setProcessEnvironment(environment());
        daemon_.start(u"dbus-daemon"_s, {u"--session"_s, u"--print-address"_s, u"--nofork"_s});
        ASSERT_TRUE(waitUntil([this] { return daemon_.canReadLine(); }));
        bus_ = QDBusConnection::connectToBus(QString::fromUtf8(daemon_.readLine().trimmed()), u"activation"_s);
        ASSERT_TRUE(bus_.isConnected());
    }

    void TearDown() override
    {
        if (!bus_.isConnected())
            return;
        if (const uint running = bus_.interface()->servicePid(service_))
            ::kill(static_cast<pid_t>(running), SIGKILL);
        QDBusConnection::disconnectFromBus(u"activation"_s);
        daemon_.kill();
        daemon_.waitForFinished();
    }

    /// Calls as a desktop does, which starts the application when it does not run.
    QString call(const QString& method, const QVariantList& arguments)
    {
        auto message =
            QDBusMessage::createMethodCall(service_, u"/app/plovik/Plovik"_s, u"org.freedesktop.Application"_s, method);
        message.setArguments(arguments + QVariantList{QVariantMap()});
        return bus_.call(message, QDBus::BlockWithGui, 60'000).errorMessage();
    }

    const QString service_ = u"app.plovik.Plovik"_s;
    QProcess daemon_;
    QDBusConnection bus_{QString()};
};

TEST_F(BusActivation, StartsTheApplicationWhichThenServesEveryCall)
{
    const TestRepository known;
    const TestRepository other;
    QDir(session_.path()).mkpath(u"config/Plovik"_s);
    writeFile(session_.filePath(u"config/Plovik/Plovik.ini"_s).toStdString(),
              "[General]\nrecentRepositories=/no/more/here, " + known.path().string() + "\n");

    EXPECT_EQ(call(u"ActivateAction"_s, {u"recent-repository"_s, QVariantList()}), u""_s);
    EXPECT_TRUE(opened(known)) << recent().toStdString();
    const uint running = bus_.interface()->servicePid(service_);

    const QString uri = QUrl::fromLocalFile(QString::fromStdString(other.path().string())).toString();
    EXPECT_EQ(call(u"Open"_s, {QStringList{uri}}), u""_s);
    EXPECT_TRUE(opened(other)) << recent().toStdString();
    EXPECT_EQ(call(u"Activate"_s, {}), u""_s);
    EXPECT_EQ(bus_.interface()->servicePid(service_), running);
}

} // namespace
} // namespace plovik
