// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/http/HttpFailure.h"

#include <QByteArray>
#include <QCoroTask>
#include <QNetworkRequest>
#include <QString>
#include <QUrl>

#include <chrono>
#include <optional>
#include <stop_token>

namespace plovik {

/// One request over HTTP.
struct HttpCall {
    QNetworkRequest head;                  ///< the address, the headers and the TLS configuration
    std::optional<QByteArray> body = {};   ///< is posted; without a body the address is fetched
    int redirects = 0;                     ///< as many are followed when fetching, but none from HTTPS to HTTP
    std::chrono::milliseconds timeLimit{}; ///< for everything together
    qint64 replyLimit = 0;                 ///< bytes
};

struct HttpAnswer {
    QUrl address;                            ///< of the server that answered last
    int status = 0;                          ///< 0 when none came
    QString phrase = {};                     ///< what the server calls the status
    QByteArray body = {};                    ///< as sent: it is asked for without compression
    QUrl redirect = {};                      ///< where the status leads, where that was not followed
    std::optional<HttpFailure> failure = {}; ///< why the answer is not whole
};

/// Makes a request, through the proxy that the system names for the address, but never through one to this computer.
/// A body is posted once, even where the network library would try again. No TLS error is ignored; nothing is cached
/// or kept. Throws Cancelled soon after `stop` was requested; the connection is closed then. Main thread.
QCoro::Task<HttpAnswer> send(HttpCall call, std::stop_token stop);

/// Whether the host is this computer itself.
bool isLoopback(const QUrl& address);

} // namespace plovik
