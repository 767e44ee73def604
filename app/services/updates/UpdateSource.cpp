// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/updates/UpdateSource.h"

using namespace Qt::StringLiterals;

namespace plovik {

UpdateSource UpdateSource::built()
{
    return {.running = QStringLiteral(PLOVIK_VERSION), .feed = QUrl(QStringLiteral(PLOVIK_RELEASE_FEED))};
}

} // namespace plovik
