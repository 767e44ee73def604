// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/TrustedPrograms.h"

#include "app/settings/Settings.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik::trustedPrograms {

namespace {

const QString trustedKey = u"trustedPrograms"_s;
const QString keptOffKey = u"keptOffPrograms"_s;
constexpr qsizetype mostRemembered = 500;

/// An entry is a path, whose bytes are percent-encoded where they are not plain, a space and the fingerprint.
QString startOf(const std::filesystem::path& root)
{
    return QString::fromLatin1(QByteArray::fromStdString(root.string()).toPercentEncoding("/")) + u' ';
}

QString remembered(const QString& key, const std::filesystem::path& root)
{
    const QString start = startOf(root);
    const QStringList entries = Settings::shared().value(key).toStringList();
    const auto found = std::ranges::find_if(entries, [&](const QString& entry) { return entry.startsWith(start); });
    return found == entries.end() ? QString() : found->mid(start.size());
}

void remember(const QString& key, const std::filesystem::path& root, const QString& fingerprint)
{
    const QString start = startOf(root);
    QStringList entries = Settings::shared().value(key).toStringList();
    entries.removeIf([&](const QString& entry) { return entry.startsWith(start); });
    entries.prepend(start + fingerprint);
    Settings::shared().set(key, QStringList(entries.mid(0, mostRemembered)));
}

} // namespace

QString trusted(const std::filesystem::path& root) { return remembered(trustedKey, root); }

QString keptOff(const std::filesystem::path& root) { return remembered(keptOffKey, root); }

void trust(const std::filesystem::path& root, const QString& fingerprint) { remember(trustedKey, root, fingerprint); }

void keepOff(const std::filesystem::path& root, const QString& fingerprint) { remember(keptOffKey, root, fingerprint); }

} // namespace plovik::trustedPrograms
