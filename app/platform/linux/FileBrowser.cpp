// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/FileBrowser.h"

#include "app/platform/FileUri.h"
#include "app/platform/linux/SessionBus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <gio/gio.h>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using Failed = std::function<void(std::string)>;

void openFolder(const std::filesystem::path& folder, const Failed& failed)
{
    GError* error = nullptr;
    if (g_app_info_launch_default_for_uri(fileUri(folder).c_str(), nullptr, &error) != 0)
        return;
    const QString reason = QString::fromUtf8(error ? error->message : "");
    g_clear_error(&error);
    failed(QCoreApplication::translate("FileBrowser", "The folder could not be shown: %1").arg(reason).toStdString());
}

} // namespace

void revealFiles(const std::vector<std::filesystem::path>& files, Failed failed)
{
    if (files.empty())
        return;
    const std::filesystem::path folder = files.front().parent_path();
    if (!hasSessionBus()) {
        openFolder(folder, failed);
        return;
    }

    QStringList uris;
    for (const auto& file : files)
        uris.append(QString::fromStdString(fileUri(file)));
    auto request = QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
                                                  u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    request << uris << QString();
    auto* answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(request), QCoreApplication::instance());
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [answer, folder, failed = std::move(failed)] {
        answer->deleteLater();
        if (answer->isError())
            openFolder(folder, failed);
    });
}

} // namespace plovik
