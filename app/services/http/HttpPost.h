// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QNetworkProxy>
#include <QNetworkRequest>
#include <QString>
#include <QUrl>

#include <chrono>
#include <stop_token>

namespace plovik {

/// One request over HTTP, its headers and TLS configuration in `head`.
struct HttpCall {
    QNetworkRequest head;
    QByteArray body;
    QNetworkProxy proxy{QNetworkProxy::NoProxy};
    std::chrono::milliseconds timeLimit{}; ///< for everything together
    qint64 replyLimit = 0;                 ///< bytes
};

struct HttpAnswer {
    QString host;
    int status = 0; ///< 0 when none came
    QByteArray body;
    QUrl redirect;   ///< where the status leads; it was not followed
    QString problem; ///< why there is no whole answer, as a sentence; empty when there is
};

/// Posts once: nothing is sent again, no redirect is followed, no TLS error ignored, nothing cached or kept. Throws
/// CommitMessageAI::Cancelled soon after `stop` was requested; the connection is closed then. Main thread.
QCoro::Task<HttpAnswer> post(HttpCall call, std::stop_token stop);

/// The proxy that the desktop or the environment names for an address; none for this computer itself. May take long.
/// Any thread.
QNetworkProxy systemProxy(const QUrl& address);

} // namespace plovik
