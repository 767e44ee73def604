// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/linux/SessionBus.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace plovik {

bool hasSessionBus()
{
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/bus"_L1);
}

} // namespace plovik
