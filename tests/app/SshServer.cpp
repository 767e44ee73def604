// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/app/SshServer.h"
#include "tests/support/OwnEnvironment.h"

#include <QStandardPaths>
#include <QTcpServer>

#include <gtest/gtest.h>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace plovik::test {

namespace {

QString run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished() && process.exitCode() == 0) << process.readAllStandardError().constData();
    return QString::fromUtf8(process.readAllStandardOutput());
}

int freePort()
{
    QTcpServer server;
    EXPECT_TRUE(server.listen(QHostAddress::LocalHost));
    return server.serverPort();
}

} // namespace

SshServer::SshServer(const QString& passphrase)
{
    const QString program = QStandardPaths::findExecutable(u"sshd"_s, {u"/usr/sbin"_s, u"/usr/local/sbin"_s});
    if (program.isEmpty()) {
        missing_ = u"sshd is not installed"_s;
        return;
    }
    if (!userHasAccount()) {
        missing_ = u"the user of the tests has no account that sshd could sign in"_s;
        return;
    }
    // An sshd of root's steps down into this folder, which whoever starts the system's makes.
    if (::geteuid() == 0)
        ::mkdir("/run/sshd", 0755);
    const auto path = [this](const char* name) { return QString::fromStdString((folder_ / name).string()); };
    const auto makeKey = [&path](const char* name, const QString& secret) {
        run(u"ssh-keygen"_s, {u"-q"_s, u"-t"_s, u"ed25519"_s, u"-N"_s, secret, u"-f"_s, path(name)});
    };
    makeKey("host", {});
    makeKey("user key", passphrase);
    fingerprint_ = run(u"ssh-keygen"_s, {u"-l"_s, u"-f"_s, path("host.pub")}).split(u' ').value(1).toStdString();
    writeFile(folder_ / "authorized", readFile(folder_ / "user key.pub"));
    sshd_.setProgram(program);
    for (int attempt = 0; attempt < 3; ++attempt) {
        if (listen(freePort()))
            return;
    }
    missing_ = u"sshd does not run here: "_s + QString::fromUtf8(said_);
}

SshServer::~SshServer()
{
    sshd_.terminate();
    sshd_.waitForFinished();
}

bool SshServer::listen(int port)
{
    port_ = port;
    const std::string folder = folder_.path().string();
    writeFile(folder_ / "config", "ListenAddress 127.0.0.1:" + std::to_string(port) + "\nHostKey " + folder +
                                      "/host\nAuthorizedKeysFile " + folder +
                                      "/authorized\nPidFile none\nUsePAM no\nStrictModes no\nPermitRootLogin yes\n"
                                      "PasswordAuthentication no\nKbdInteractiveAuthentication no\n");
    sshd_.setReadChannel(QProcess::StandardError);
    sshd_.start(sshd_.program(), {u"-D"_s, u"-e"_s, u"-f"_s, QString::fromStdString(folder + "/config")});
    said_.clear();
    while (!said_.contains("listening on 127.0.0.1")) {
        if (!sshd_.waitForReadyRead(10'000))
            return false; // it has ended
        said_ += sshd_.readAll();
    }
    return true;
}

QString SshServer::url(const std::filesystem::path& repository) const
{
    return u"ssh://%1@127.0.0.1:%2%3"_s.arg(QString::fromLocal8Bit(::getpwuid(::getuid())->pw_name))
        .arg(port_)
        .arg(QString::fromStdString(repository.string()));
}

std::string SshServer::client() const
{
    const std::string folder = folder_.path().string();
    return "ssh -F none -o IdentitiesOnly=yes -o IdentityAgent=none -o GlobalKnownHostsFile=none -o "
           "UserKnownHostsFile=" +
           folder + "/known -i '" + folder + "/user key'";
}

} // namespace plovik::test
