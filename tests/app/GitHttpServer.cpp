// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/app/GitHttpServer.h"

#include <QProcess>
#include <QTcpSocket>

#include <gtest/gtest.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace plovik::test {

namespace {

QByteArray field(const QByteArray& head, const QByteArray& name)
{
    const qsizetype at = head.toLower().indexOf("\r\n" + name + ": ");
    const qsizetype value = at + name.size() + 4;
    return at < 0 ? QByteArray() : head.mid(value, head.indexOf('\r', value) - value);
}

} // namespace

GitHttpServer::GitHttpServer(const QSslConfiguration& identity, std::filesystem::path folder, QByteArray account)
    : folder_(std::move(folder)), account_(std::move(account))
{
    server_.setSslConfiguration(identity);
    EXPECT_TRUE(server_.listen(QHostAddress::LocalHost));
    QObject::connect(&server_, &QTcpServer::pendingConnectionAvailable, &server_, [this] {
        QTcpSocket* const socket = server_.nextPendingConnection();
        const auto received = std::make_shared<QByteArray>();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, received] {
            *received += socket->readAll();
            const qsizetype end = received->indexOf("\r\n\r\n");
            if (end < 0)
                return;
            const QByteArray head = received->first(end + 2);
            const QByteArray body = received->mid(end + 4);
            if (body.size() < field(head, "content-length").toInt())
                return;
            received->clear();
            serve(*socket, head, body);
        });
    });
}

QString GitHttpServer::url(const QString& repository) const
{
    return u"https://127.0.0.1:%1/%2"_s.arg(server_.serverPort()).arg(repository);
}

void GitHttpServer::serve(QTcpSocket& socket, const QByteArray& head, const QByteArray& body)
{
    const QByteArray authorization = field(head, "authorization");
    if (authorization != "Basic " + account_.toBase64()) {
        refused += authorization.isEmpty() ? 0 : 1;
        socket.write(
            "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"test\"\r\nContent-Length: 0\r\n\r\n");
        return;
    }
    const QByteArray target = head.split(' ').value(1);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"GIT_PROJECT_ROOT"_s, QString::fromStdString(folder_.string()));
    environment.insert(u"GIT_HTTP_EXPORT_ALL"_s, u"1"_s);
    const auto set = [&environment](const QString& name, const QByteArray& value) {
        environment.insert(name, QString::fromLatin1(value));
    };
    set(u"REQUEST_METHOD"_s, head.split(' ').value(0));
    set(u"PATH_INFO"_s, target.split('?').value(0));
    set(u"QUERY_STRING"_s, target.split('?').value(1));
    set(u"CONTENT_TYPE"_s, field(head, "content-type"));
    set(u"CONTENT_LENGTH"_s, QByteArray::number(body.size()));
    set(u"HTTP_CONTENT_ENCODING"_s, field(head, "content-encoding"));
    set(u"GIT_PROTOCOL"_s, field(head, "git-protocol"));
    set(u"REMOTE_USER"_s, account_.split(':').value(0));
    auto* const git = new QProcess(&socket);
    git->setProcessEnvironment(environment);
    QObject::connect(git, &QProcess::finished, &socket, [git, &socket] {
        const QByteArray answer = git->readAllStandardOutput();
        const QByteArray status = answer.startsWith("Status: ") ? answer.mid(8, answer.indexOf('\r') - 8) : "200 OK";
        socket.write("HTTP/1.1 " + status + "\r\nConnection: close\r\n" + answer);
        socket.disconnectFromHost();
    });
    git->start(u"git"_s, {u"http-backend"_s});
    git->write(body);
    git->closeWriteChannel();
}

} // namespace plovik::test
