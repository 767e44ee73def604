// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/AppAppearance.h"

#include "app/settings/Settings.h"

namespace plovik {

QString rawValue(AppAppearance appearance) { return displayName(appearance).toLower(); }

QString displayName(AppAppearance appearance)
{
    switch (appearance) {
    case AppAppearance::light:
        return QStringLiteral("Light");
    case AppAppearance::dark:
        return QStringLiteral("Dark");
    case AppAppearance::system:
        break;
    }
    return QStringLiteral("System");
}

AppAppearance appearanceNamed(const QString& rawName)
{
    for (const AppAppearance appearance : allAppearances) {
        if (rawValue(appearance) == rawName)
            return appearance;
    }
    return AppAppearance::system;
}

AppAppearance storedAppearance() { return appearanceNamed(Settings::shared().value(settings::appearance)); }

} // namespace plovik
