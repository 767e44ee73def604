// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/app/TlsAuthority.h"

#include <QFile>
#include <QHostAddress>
#include <QProcess>
#include <QSslKey>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik::test {

TlsAuthority::TlsAuthority()
{
    run({u"req"_s, u"-x509"_s, u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s, u"ec_paramgen_curve:P-256"_s, u"-nodes"_s,
         u"-days"_s, u"2"_s, u"-subj"_s, u"/CN=Test Authority"_s, u"-keyout"_s, u"ca.key"_s, u"-out"_s, u"ca.pem"_s});
}

QSslCertificate TlsAuthority::own() const { return QSslCertificate::fromPath(path(u"ca.pem"_s)).value(0); }

QSslConfiguration TlsAuthority::trusting() const
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates({own()});
    return configuration;
}

QSslConfiguration TlsAuthority::identity(const QString& name)
{
    QFile extension(path(u"names"_s));
    EXPECT_TRUE(extension.open(QFile::WriteOnly));
    extension.write((QHostAddress(name).isNull() ? "subjectAltName=DNS:" : "subjectAltName=IP:") + name.toLatin1());
    extension.close();
    run({u"req"_s, u"-new"_s, u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s, u"ec_paramgen_curve:P-256"_s, u"-nodes"_s,
         u"-subj"_s, u"/CN="_s + name, u"-keyout"_s, u"server.key"_s, u"-out"_s, u"server.csr"_s});
    run({u"x509"_s, u"-req"_s, u"-in"_s, u"server.csr"_s, u"-CA"_s, u"ca.pem"_s, u"-CAkey"_s, u"ca.key"_s,
         u"-CAcreateserial"_s, u"-days"_s, u"2"_s, u"-extfile"_s, u"names"_s, u"-out"_s, u"server.pem"_s});
    QFile key(path(u"server.key"_s));
    EXPECT_TRUE(key.open(QFile::ReadOnly));
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate::fromPath(path(u"server.pem"_s)).value(0));
    configuration.setPrivateKey(QSslKey(&key, QSsl::Ec));
    return configuration;
}

void TlsAuthority::run(const QStringList& arguments)
{
    QProcess openssl;
    openssl.setWorkingDirectory(folder_.path());
    openssl.start(u"openssl"_s, arguments);
    ASSERT_TRUE(openssl.waitForFinished() && openssl.exitCode() == 0) << openssl.readAllStandardError().constData();
}

} // namespace plovik::test
