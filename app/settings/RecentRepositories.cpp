// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/RecentRepositories.h"

#include "app/settings/Settings.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace plovik::recentRepositories {

namespace {

const QString listKey = u"recentRepositories"_s;
const QString pinnedKey = u"pinnedRepositories"_s;
constexpr qsizetype mostKept = 25;

// A settings file holds text, but a path is bytes, so bytes that are not plain are percent-encoded.
QString encoded(const std::filesystem::path& path)
{
    return QString::fromLatin1(QByteArray::fromStdString(path.string()).toPercentEncoding("/ !'()*,;:@&=+$#[]"));
}

std::filesystem::path decoded(const QString& stored)
{
    return QByteArray::fromPercentEncoding(stored.toLatin1()).toStdString();
}

std::vector<std::filesystem::path> existing(const QString& key)
{
    std::vector<std::filesystem::path> found;
    for (const QString& entry : Settings::shared().value(key).toStringList()) {
        std::filesystem::path path = decoded(entry);
        std::error_code ignored;
        if (std::filesystem::exists(path, ignored))
            found.push_back(std::move(path));
    }
    return found;
}

} // namespace

void add(const std::filesystem::path& root)
{
    QStringList list = Settings::shared().value(listKey).toStringList();
    const QString entry = encoded(root);
    list.removeAll(entry);
    list.prepend(entry);
    Settings::shared().set(listKey, QStringList(list.mid(0, mostKept)));
}

void remove(const std::filesystem::path& root)
{
    QStringList list = Settings::shared().value(listKey).toStringList();
    list.removeAll(encoded(root));
    Settings::shared().set(listKey, list);
}

std::vector<std::filesystem::path> all() { return existing(listKey); }

std::vector<std::filesystem::path> pinned() { return existing(pinnedKey); }

bool isPinned(const std::filesystem::path& root)
{
    return Settings::shared().value(pinnedKey).toStringList().contains(encoded(root));
}

void pin(const std::filesystem::path& root, bool isPinned)
{
    QStringList list = Settings::shared().value(pinnedKey).toStringList();
    list.removeAll(encoded(root));
    if (isPinned)
        list.append(encoded(root));
    Settings::shared().set(pinnedKey, list);
}

} // namespace plovik::recentRepositories
