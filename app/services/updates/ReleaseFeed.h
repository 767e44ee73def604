// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/updates/SemanticVersion.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <span>
#include <vector>

namespace plovik {

/// A release as a feed tells of it.
struct Release {
    QString name; ///< the version as the feed writes it
    SemanticVersion version;
    bool isForEveryone = true; ///< false for development releases and other trials
    QString notes;             ///< plain text; empty when there are none
    QUrl page;                 ///< https; empty when there is none
};

/// Reads the releases of a metainfo file or of a releases file, both as AppStream defines them; releases whose version
/// cannot be compared are left out. Empty when this is no such list, or is cut short.
std::vector<Release> parseReleaseFeed(const QByteArray& xml);

/// The newest release after `running`, null when there is none. Pre-releases are for those who run one.
const Release* newerRelease(std::span<const Release> releases, const SemanticVersion& running);

} // namespace plovik
