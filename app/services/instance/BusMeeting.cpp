// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/FileUri.h"
#include "app/services/instance/SingleInstance.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QFileInfo>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr auto kService = "app.plovik.Plovik"_L1;
constexpr auto kObject = "/app/plovik/Plovik"_L1;
constexpr auto kInterface = "org.freedesktop.Application"_L1;
constexpr auto kToken = "activation-token"_L1;
constexpr auto kStartupId = "desktop-startup-id"_L1;

/// What the running application answers on the bus.
class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    ApplicationAdaptor(QObject* object, std::function<void(LaunchRequest)> received)
        : QDBusAbstractAdaptor(object), received_(std::move(received))
    {}

public Q_SLOTS:
    // The names that the interface gives them on the bus.
    void Activate(const QVariantMap& platformData) { receive({}, platformData); }

    void Open(const QStringList& uris, const QVariantMap& platformData)
    {
        LaunchRequest request{.kind = LaunchRequest::Kind::Open};
        for (const QString& uri : uris) {
            if (auto path = pathOfFileUri(uri.toStdString()))
                request.folders.push_back(std::move(*path));
        }
        receive(std::move(request), platformData);
    }

    void ActivateAction(const QString& name, const QVariantList&, const QVariantMap& platformData)
    {
        receive({.kind = LaunchRequest::Kind::Action, .action = name.toStdString()}, platformData);
    }

private:
    void receive(LaunchRequest request, const QVariantMap& platformData)
    {
        request.activationToken = platformData.value(kToken).toString().toStdString();
        request.startupId = platformData.value(kStartupId).toString().toStdString();
        received_(std::move(request));
    }

    std::function<void(LaunchRequest)> received_;
};

/// Where the session's bus is; empty when there is none. Left to look for itself, the bus library starts one on some
/// systems.
QString sessionBus()
{
    QString given = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!given.isEmpty())
        return given;
    const QString usual = qEnvironmentVariable("XDG_RUNTIME_DIR") + "/bus"_L1;
    return QFileInfo::exists(usual) ? "unix:path="_L1 + usual : QString();
}

QLatin1String methodFor(LaunchRequest::Kind kind)
{
    switch (kind) {
    case LaunchRequest::Kind::Open:
        return "Open"_L1;
    case LaunchRequest::Kind::Action:
        return "ActivateAction"_L1;
    case LaunchRequest::Kind::Activate:
        break;
    }
    return "Activate"_L1;
}

class BusMeeting : public LaunchMeeting {
public:
    ~BusMeeting() override
    {
        if (connection_.isConnected())
            QDBusConnection::disconnectFromBus(connection_.name());
    }

    Claim claim(std::function<void(LaunchRequest)> received) override
    {
        const QString address = sessionBus();
        if (address.isEmpty())
            return Claim::Unavailable;
        // A connection of its own, so that the name goes with this object.
        connection_ = QDBusConnection::connectToBus(
            address, u"single-instance-%1"_s.arg(reinterpret_cast<quintptr>(this), 0, 16));
        if (!connection_.isConnected())
            return Claim::Unavailable;

        // The object stands before the name does: whoever finds the name can call at once.
        new ApplicationAdaptor(&object_, std::move(received));
        connection_.registerObject(kObject, &object_, QDBusConnection::ExportAdaptors);
        const auto reply = connection_.interface()->registerService(
            kService, QDBusConnectionInterface::DontQueueService, QDBusConnectionInterface::DontAllowReplacement);
        if (!reply.isValid())
            return Claim::Unavailable;
        return reply.value() == QDBusConnectionInterface::ServiceRegistered ? Claim::First : Claim::Taken;
    }

    bool hand(const LaunchRequest& request, std::chrono::milliseconds timeout) override
    {
        auto message = QDBusMessage::createMethodCall(kService, kObject, kInterface, methodFor(request.kind));
        if (request.kind == LaunchRequest::Kind::Open) {
            QStringList uris;
            for (const auto& folder : request.folders)
                uris.append(QString::fromStdString(fileUri(folder)));
            message << uris;
        } else if (request.kind == LaunchRequest::Kind::Action) {
            message << QString::fromStdString(request.action) << QVariantList();
        }
        QVariantMap platformData;
        if (!request.activationToken.empty())
            platformData.insert(kToken, QString::fromStdString(request.activationToken));
        if (!request.startupId.empty())
            platformData.insert(kStartupId, QString::fromStdString(request.startupId));
        message << platformData;
        message.setAutoStartService(false);
        return connection_.call(message, QDBus::Block, static_cast<int>(timeout.count())).type() ==
               QDBusMessage::ReplyMessage;
    }

private:
    QDBusConnection connection_{QString()};
    QObject object_;
};

} // namespace

std::unique_ptr<LaunchMeeting> meetingOnBus() { return std::make_unique<BusMeeting>(); }

} // namespace plovik

#include "BusMeeting.moc"
