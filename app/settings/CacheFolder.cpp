// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/CacheFolder.h"

#include <QFile>
#include <QStandardPaths>

namespace plovik {

std::filesystem::path cacheFolder()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    return folder.isEmpty() ? std::filesystem::path()
                            : std::filesystem::path(QFile::encodeName(folder).toStdString()) / "plovik";
}

} // namespace plovik
