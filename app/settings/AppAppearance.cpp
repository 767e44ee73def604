// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/AppAppearance.h"

#include "app/settings/Settings.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(AppAppearance)
};

} // namespace

QString rawValue(AppAppearance appearance)
{
    switch (appearance) {
    case AppAppearance::light:
        return u"light"_s;
    case AppAppearance::dark:
        return u"dark"_s;
    case AppAppearance::system:
        break;
    }
    return u"system"_s;
}

QString displayName(AppAppearance appearance)
{
    switch (appearance) {
    case AppAppearance::light:
        return Text::tr("Light");
    case AppAppearance::dark:
        return Text::tr("Dark");
    case AppAppearance::system:
        break;
    }
    return Text::tr("System");
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
