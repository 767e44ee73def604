// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/OwnCommands.h"

#include "app/settings/Settings.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

namespace plovik::ownCommands {

namespace {

/// In the order of Entry::Place.
constexpr std::array placeNames{QLatin1String("repository"), QLatin1String("commit"), QLatin1String("branch"),
                                QLatin1String("file")};

Entry::Place placeNamed(const QString& name)
{
    const auto found = std::ranges::find_if(placeNames, [&name](QLatin1String known) { return name == known; });
    return static_cast<Entry::Place>(found == placeNames.end() ? 0 : found - placeNames.begin());
}

} // namespace

std::vector<Entry> all()
{
    const QByteArray stored = Settings::shared().value(settings::ownCommands).toUtf8();
    std::vector<Entry> entries;
    for (const QJsonValue& value : QJsonDocument::fromJson(stored).array()) {
        const QJsonObject object = value.toObject();
        entries.push_back({object[QLatin1String("title")].toString(), object[QLatin1String("line")].toString(),
                           placeNamed(object[QLatin1String("place")].toString()),
                           object[QLatin1String("keys")].toString(), object[QLatin1String("asks")].toBool()});
    }
    return entries;
}

void store(const std::vector<Entry>& entries)
{
    QJsonArray array;
    for (const Entry& entry : entries)
        array.append(QJsonObject{{QLatin1String("title"), entry.title},
                                 {QLatin1String("line"), entry.line},
                                 {QLatin1String("place"), placeNames[static_cast<std::size_t>(entry.place)]},
                                 {QLatin1String("keys"), entry.keys},
                                 {QLatin1String("asks"), entry.asksFirst}});
    Settings::shared().set(settings::ownCommands,
                           QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact)));
}

} // namespace plovik::ownCommands
