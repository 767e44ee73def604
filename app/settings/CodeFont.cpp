// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/CodeFont.h"

#include "app/settings/Settings.h"

#include <QFontDatabase>

#include <algorithm>

namespace plovik::CodeFont {

namespace {

// Desktops show 96 pixels an inch where a point is the 72nd part of one: their 9 points are 12 pixels high.
constexpr double desktopPointsPerPoint = 72.0 / 96.0;

} // namespace

QFont font(const QString& name, double size)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (!name.isEmpty() && QFontDatabase::hasFamily(name)) {
        font = QFont(name);
        font.setFixedPitch(true);
    }
    font.setStyleHint(QFont::Monospace);
    font.setPointSizeF(std::clamp(size, minSize, maxSize) * desktopPointsPerPoint);
    return font;
}

QFont current()
{
    const Settings& settings = Settings::shared();
    return font(settings.value(settings::codeFontName), settings.value(settings::codeFontSize));
}

QStringList monospacedFamilies()
{
    QStringList families;
    for (const QString& family : QFontDatabase::families()) {
        if (QFontDatabase::isFixedPitch(family) && !QFontDatabase::isPrivateFamily(family))
            families.append(family);
    }
    families.removeDuplicates();
    families.sort(Qt::CaseInsensitive);
    return families;
}

} // namespace plovik::CodeFont
