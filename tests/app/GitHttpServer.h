// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QSslConfiguration>
#include <QSslServer>
#include <QString>

#include <filesystem>

class QTcpSocket;

namespace plovik::test {

/// Git's own server of a folder of repositories, on 127.0.0.1 over TLS, for one user and password. It answers while the
/// event loop runs.
class GitHttpServer {
public:
    GitHttpServer(const QSslConfiguration& identity, std::filesystem::path folder, QByteArray account);

    /// Without the user's name.
    QString url(const QString& repository) const;

    int refused = 0; ///< requests with another account than `account`, "user:password"

private:
    void serve(QTcpSocket& socket, const QByteArray& head, const QByteArray& body);

    std::filesystem::path folder_;
    QByteArray account_;
    QSslServer server_;
};

} // namespace plovik::test
