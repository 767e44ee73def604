// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/updates/FeedFetch.h"

#include <QString>
#include <QUrl>

namespace plovik {

/// Where to ask for updates, and for what.
struct UpdateSource {
    QString running; ///< the version of this program
    QUrl feed;       ///< empty when updates come with the system's packages
    FeedFetch::Limits limits = {};

    /// What this program was built with.
    static UpdateSource built();
};

} // namespace plovik
