// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace plovik::test {

/// Makes keys and certificates in a folder of its own.
class TlsAuthority {
public:
    TlsAuthority();

    QSslCertificate own() const;
    /// A client that trusts nobody else.
    QSslConfiguration trusting() const;
    /// What a server shows who is called `name`.
    QSslConfiguration identity(const QString& name);

private:
    QString path(const QString& name) const { return folder_.filePath(name); }
    void run(const QStringList& arguments);

    QTemporaryDir folder_;
};

} // namespace plovik::test
