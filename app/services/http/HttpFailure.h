// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace plovik {

/// Why there is no whole answer from a server.
struct HttpFailure {
    enum class Kind {
        noTls, ///< Qt has no library for secure connections
        hostNotFound,
        refused,
        closed,    ///< the connection ended before the reply did
        notSecure, ///< the server does not prove to be the host; `reason` says how
        tlsFailed, ///< no secure connection came about; `reason` says why
        proxyNotFound,
        proxyRefused,
        proxyWantsSignIn,
        tooLarge, ///< more than `limit` bytes
        noAnswer, ///< nothing came within `limit` seconds
        noEnd,    ///< the reply did not end within `limit` seconds
        insecureRedirect,
        tooManyRedirects,
        unreachable, ///< anything else; `reason` says what
    };

    Kind kind = Kind::unreachable;
    QString host;        ///< the server, or the proxy for what concerns the proxy
    QString reason = {}; ///< in the words of the network library
    qint64 limit = 0;
};

/// Returns the failure as one sentence for the user.
QString sentence(const HttpFailure& failure);

} // namespace plovik
