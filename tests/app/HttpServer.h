// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QSslConfiguration>
#include <QSslServer>
#include <QTcpServer>
#include <QUrl>

#include <map>

class QTcpSocket;

namespace plovik::test {

/// Answers each path with fixed bytes; what it has no answer for waits forever. On 127.0.0.1.
class HttpServer {
public:
    /// Without TLS.
    HttpServer();
    explicit HttpServer(const QSslConfiguration& identity);

    QUrl url(const QString& path);

    void answer(const QByteArray& path, const QByteArray& body, const QByteArray& status = "200 OK",
                const QByteArray& header = "X-Nothing: 1");
    void redirect(const QByteArray& path, const QUrl& to);
    /// Exactly these bytes, and then the end of the connection.
    void answerRaw(const QByteArray& path, const QByteArray& bytes) { answers_[path] = {bytes, false}; }
    /// These bytes again and again.
    void answerForever(const QByteArray& path, const QByteArray& bytes) { answers_[path] = {bytes, true}; }

    QByteArrayList requests; ///< each whole, the names of its headers in lower case
    int connections = 0;     ///< that are open

private:
    struct Answer {
        QByteArray bytes;
        bool again = false;
    };

    void listen(QTcpServer& server);
    void serve(QTcpSocket& socket, const QByteArray& request);

    std::map<QByteArray, Answer> answers_;
    QTcpServer plain_;
    QSslServer tls_;
};

} // namespace plovik::test
