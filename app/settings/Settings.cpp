// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/Settings.h"

#include <QSettings>

#include <cmath>

namespace plovik {

namespace {

constexpr auto nameOfAll = QLatin1String("Plovik");

QSettings& file()
{
    static QSettings settings(QSettings::IniFormat, QSettings::UserScope, nameOfAll, nameOfAll);
    return settings;
}

QString keyOf(const char* key) { return QString::fromLatin1(key); }

} // namespace

Settings& Settings::shared()
{
    static Settings instance;
    return instance;
}

double Settings::value(const Setting<double>& setting) const
{
    bool readable = false;
    const double stored = file().value(keyOf(setting.key)).toDouble(&readable);
    return readable && std::isfinite(stored) ? stored : setting.fallback;
}

bool Settings::value(const Setting<bool>& setting) const
{
    const QString stored = file().value(keyOf(setting.key)).toString();
    if (stored == QLatin1String("true") || stored == QLatin1String("1"))
        return true;
    if (stored == QLatin1String("false") || stored == QLatin1String("0"))
        return false;
    return setting.fallback;
}

QString Settings::value(const Setting<const char*>& setting) const
{
    const QVariant stored = file().value(keyOf(setting.key));
    // A comma in a file written by hand makes a list, which is not a text either.
    return stored.typeId() == QMetaType::QString ? stored.toString() : QString::fromUtf8(setting.fallback);
}

QVariant Settings::value(const QString& key) const { return file().value(key); }

void Settings::set(const Setting<double>& setting, double value) { set(keyOf(setting.key), value); }

void Settings::set(const Setting<bool>& setting, bool value) { set(keyOf(setting.key), value); }

void Settings::set(const Setting<const char*>& setting, const QString& value) { set(keyOf(setting.key), value); }

void Settings::set(const QString& key, const QVariant& value)
{
    if (file().contains(key) && file().value(key) == value)
        return;
    file().setValue(key, value);
    Q_EMIT changed(key);
}

bool Settings::save()
{
    // What is still to be written is shared by all objects of one file, while a status is each one's own and stays bad
    // for good.
    QSettings attempt(QSettings::IniFormat, QSettings::UserScope, nameOfAll, nameOfAll);
    attempt.sync();
    return attempt.status() != QSettings::AccessError;
}

QString Settings::path() const { return file().fileName(); }

} // namespace plovik

#include "moc_Settings.cpp"
