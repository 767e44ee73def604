// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/RecentRepositories.h"

#include "app/settings/Settings.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace plovik::recentRepositories {

namespace {

const QString listKey = u"recentRepositories"_s;
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

std::vector<std::filesystem::path> all()
{
    std::vector<std::filesystem::path> found;
    for (const QString& entry : Settings::shared().value(listKey).toStringList()) {
        std::filesystem::path path = decoded(entry);
        std::error_code ignored;
        if (std::filesystem::exists(path, ignored))
            found.push_back(std::move(path));
    }
    return found;
}

} // namespace plovik::recentRepositories
