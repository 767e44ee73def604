// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/updates/ReleaseFeed.h"

#include <QCoroTask>
#include <QString>
#include <QUrl>

#include <chrono>
#include <optional>
#include <stop_token>

namespace plovik {

/// Where to ask for updates, and for what.
struct UpdateSource {
    struct Limits {
        qint64 bytes = 5 * 1024 * 1024;
        std::chrono::milliseconds time{std::chrono::seconds(30)}; ///< for everything together
    };

    QString running; ///< the version of this program
    QUrl feed;       ///< empty when updates come with the system's packages
    Limits limits = {};

    /// Returns what this program was built with.
    static UpdateSource built();
};

struct UpdateAnswer {
    std::optional<Release> newer = {}; ///< empty when the running version is the newest, and when nobody knows
    QString problem = {};              ///< why nobody knows, as a sentence; empty when the answer is known
};

/// Fetches the feed, over HTTPS only, and looks for a newer release. Throws Cancelled soon after `stop` was requested.
/// Main thread.
QCoro::Task<UpdateAnswer> checkForUpdates(UpdateSource source, std::stop_token stop);

} // namespace plovik
