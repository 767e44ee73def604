// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/CodeFont.h"

#include "app/settings/Settings.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace plovik::CodeFont {

namespace {

// Desktops show 96 pixels an inch where a point is the 72nd part of one: their 9 points are 12 pixels high.
constexpr double desktopPointsPerPoint = 72.0 / 96.0;

// Fontconfig calls a font proportional as soon as some of its signs are wider than the others, as in "Noto Sans Mono".
// Code is fixed in pitch where Latin letters are, so these are measured.
bool hasEqualLetters(const QString& family)
{
    if (!QFontDatabase::writingSystems(family).contains(QFontDatabase::Latin))
        return false;
    QFont font(family);
    font.setStyleStrategy(QFont::NoFontMerging);
    font.setPixelSize(100);
    const QFontMetricsF metrics(font);
    const double width = metrics.horizontalAdvance(u'M');
    return std::ranges::all_of(u"iMW.0"_s, [&](QChar letter) {
        return metrics.inFont(letter) && qFuzzyCompare(metrics.horizontalAdvance(letter), width);
    });
}

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
    return font(settings.value(settings::codeFontName), size());
}

double size()
{
    constexpr double ordinary = 12;
    constexpr double besidePoints = 11;
    const double chosen = Settings::shared().value(settings::codeFontSize);
    const double suitable = std::round(ordinary * std::max(1.0, QGuiApplication::font().pointSizeF() / besidePoints));
    return std::clamp(chosen > 0 ? chosen : suitable, minSize, maxSize);
}

void changeSize(double points)
{
    Settings::shared().set(settings::codeFontSize, std::clamp(size() + points, minSize, maxSize));
}

int changeSizeByWheel(int angle)
{
    constexpr int notch = 120;
    const int notches = angle / notch;
    if (notches != 0)
        changeSize(notches);
    return angle % notch;
}

int tabWidth()
{
    const double columns = Settings::shared().value(settings::tabWidth);
    return static_cast<int>(std::clamp<double>(columns, minTabWidth, maxTabWidth));
}

QStringList monospacedFamilies()
{
    QStringList families;
    for (const QString& family : QFontDatabase::families()) {
        if (QFontDatabase::isPrivateFamily(family))
            continue;
        if (QFontDatabase::isFixedPitch(family) || hasEqualLetters(family))
            families.append(family);
    }
    families.removeDuplicates();
    families.sort(Qt::CaseInsensitive);
    return families;
}

} // namespace plovik::CodeFont
