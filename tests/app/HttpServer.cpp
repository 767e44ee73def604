// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/app/HttpServer.h"

#include <QTcpSocket>

#include <gtest/gtest.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace plovik::test {

namespace {

/// Whether head and body are there.
bool isWhole(const QByteArray& request)
{
    const qsizetype headEnd = request.indexOf("\r\n\r\n");
    if (headEnd < 0)
        return false;
    const QByteArray name = "\r\ncontent-length:";
    const qsizetype length = request.first(headEnd).toLower().indexOf(name);
    if (length < 0)
        return true;
    const qsizetype value = length + name.size();
    return request.size() >= headEnd + 4 + request.mid(value, request.indexOf('\r', value) - value).trimmed().toInt();
}

/// The names of headers have no case, and what writes them differs in what it makes of them.
QByteArray withLowerCaseNames(QByteArray request)
{
    const qsizetype headEnd = request.indexOf("\r\n\r\n");
    for (qsizetype line = request.indexOf("\r\n"); line >= 0 && line < headEnd;
         line = request.indexOf("\r\n", line + 2))
    {
        const qsizetype length = request.indexOf(':', line) - line;
        request.replace(line, length, request.mid(line, length).toLower());
    }
    return request;
}

} // namespace

HttpServer::HttpServer() { listen(plain_); }

HttpServer::HttpServer(const QSslConfiguration& identity)
{
    tls_.setSslConfiguration(identity);
    listen(tls_);
}

QUrl HttpServer::url(const QString& path)
{
    const QTcpServer& server = tls_.isListening() ? static_cast<QTcpServer&>(tls_) : plain_;
    return QUrl(
        u"%1://127.0.0.1:%2%3"_s.arg(tls_.isListening() ? u"https"_s : u"http"_s).arg(server.serverPort()).arg(path));
}

void HttpServer::answer(const QByteArray& path, const QByteArray& body, const QByteArray& status,
                        const QByteArray& header)
{
    answerRaw(path, "HTTP/1.1 " + status + "\r\n" + header + "\r\nContent-Length: " + QByteArray::number(body.size()) +
                        "\r\nConnection: close\r\n\r\n" + body);
}

void HttpServer::redirect(const QByteArray& path, const QUrl& to)
{
    answer(path, "", "302 Found", "Location: " + to.toEncoded());
}

void HttpServer::listen(QTcpServer& server)
{
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    QObject::connect(&server, &QTcpServer::pendingConnectionAvailable, &server, [this, &server] {
        QTcpSocket* const socket = server.nextPendingConnection();
        ++connections;
        QObject::connect(socket, &QTcpSocket::disconnected, &server, [this] { --connections; });
        const auto received = std::make_shared<QByteArray>();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, received] {
            *received += socket->readAll();
            if (isWhole(*received))
                serve(*socket, std::exchange(*received, {}));
        });
    });
}

void HttpServer::serve(QTcpSocket& socket, const QByteArray& request)
{
    requests << withLowerCaseNames(request);
    const auto found = answers_.find(request.split(' ').value(1));
    if (found == answers_.end())
        return;
    const Answer answer = found->second;
    socket.write(answer.bytes);
    if (answer.again)
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, [&socket, answer] {
            if (socket.bytesToWrite() == 0)
                socket.write(answer.bytes);
        });
    else
        socket.disconnectFromHost();
}

} // namespace plovik::test
