// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/TemporaryFolder.h"

#include <QProcess>
#include <QString>

namespace plovik::test {

/// A real sshd on 127.0.0.1, run by and for the user of the tests, which lets one key in.
class SshServer {
public:
    /// The key is locked with `passphrase`.
    explicit SshServer(const QString& passphrase);
    ~SshServer();
    SshServer(const SshServer&) = delete;
    SshServer& operator=(const SshServer&) = delete;

    /// Why there is none here; empty when it listens.
    QString missing() const { return missing_; }
    QString url(const std::filesystem::path& repository) const;
    /// The value of GIT_SSH_COMMAND: ssh that has this key, and knows no host but those that it was told to trust.
    std::string client() const;
    std::string fingerprint() const { return fingerprint_; } ///< of the host

private:
    bool listen(int port);

    TemporaryFolder folder_;
    QProcess sshd_;
    QByteArray said_; ///< by sshd
    int port_ = 0;
    QString missing_;
    std::string fingerprint_;
};

} // namespace plovik::test
