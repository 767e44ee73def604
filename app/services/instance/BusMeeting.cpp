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

constexpr auto serviceName = "app.plovik.Plovik"_L1;
constexpr auto objectPath = "/app/plovik/Plovik"_L1;
constexpr auto interfaceName = "org.freedesktop.Application"_L1;
constexpr auto tokenKey = "activation-token"_L1;
constexpr auto startupIdKey = "desktop-startup-id"_L1;

/// The running application as others see it on the bus.
class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    ApplicationAdaptor(QObject* object, std::function<void(LaunchRequest)> received)
        : QDBusAbstractAdaptor(object), received_(std::move(received))
    {}

public Q_SLOTS:
    // The interface defines these names.
    void Activate(const QVariantMap& platformData) { receive({}, platformData); }

    void Open(const QStringList& uris, const QVariantMap& platformData)
    {
        LaunchRequest request{.kind = LaunchRequest::Kind::open};
        for (const QString& uri : uris) {
            if (auto path = pathOfFileUri(uri.toStdString()))
                request.folders.push_back(std::move(*path));
        }
        receive(std::move(request), platformData);
    }

    void ActivateAction(const QString& name, const QVariantList& parameters, const QVariantMap& platformData)
    {
        LaunchAction action{.name = name.toStdString(), .argument = parameters.value(0).toByteArray().toStdString()};
        for (const QVariant& folder : parameters.mid(1))
            action.folders.emplace_back(folder.toByteArray().toStdString());
        receive({.kind = LaunchRequest::Kind::action, .action = std::move(action)}, platformData);
    }

private:
    void receive(LaunchRequest request, const QVariantMap& platformData)
    {
        request.activationToken = platformData.value(tokenKey).toString().toStdString();
        request.startupId = platformData.value(startupIdKey).toString().toStdString();
        received_(std::move(request));
    }

    std::function<void(LaunchRequest)> received_;
};

/// Returns the address of the session's bus; empty when there is none. The bus library's own search would start a bus
/// on some systems.
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
    case LaunchRequest::Kind::open:
        return "Open"_L1;
    case LaunchRequest::Kind::action:
        return "ActivateAction"_L1;
    case LaunchRequest::Kind::activate:
        break;
    }
    return "Activate"_L1;
}

/// Returns what an action is about, as bytes, because the names of folders need not be UTF-8. Actions of the desktop entry
/// have no parameters.
QVariantList parametersOf(const LaunchAction& action)
{
    QVariantList parameters;
    if (!action.argument.empty() || !action.folders.empty())
        parameters.append(QByteArray::fromStdString(action.argument));
    for (const auto& folder : action.folders)
        parameters.append(QByteArray::fromStdString(folder.string()));
    return parameters;
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
            return Claim::unavailable;
        // With a connection of its own, the name is released together with this object.
        connection_ = QDBusConnection::connectToBus(
            address, u"single-instance-%1"_s.arg(reinterpret_cast<quintptr>(this), 0, 16));
        if (!connection_.isConnected())
            return Claim::unavailable;

        // The object is registered before the name, since others may call as soon as they see the name.
        new ApplicationAdaptor(&object_, std::move(received));
        connection_.registerObject(objectPath, &object_, QDBusConnection::ExportAdaptors);
        const auto reply = connection_.interface()->registerService(
            serviceName, QDBusConnectionInterface::DontQueueService, QDBusConnectionInterface::DontAllowReplacement);
        if (!reply.isValid())
            return Claim::unavailable;
        return reply.value() == QDBusConnectionInterface::ServiceRegistered ? Claim::first : Claim::taken;
    }

    bool hand(const LaunchRequest& request, std::chrono::milliseconds timeout) override
    {
        auto message = QDBusMessage::createMethodCall(serviceName, objectPath, interfaceName, methodFor(request.kind));
        if (request.kind == LaunchRequest::Kind::open) {
            QStringList uris;
            for (const auto& folder : request.folders)
                uris.append(QString::fromStdString(fileUri(folder)));
            message << uris;
        } else if (request.kind == LaunchRequest::Kind::action) {
            message << QString::fromStdString(request.action.name) << parametersOf(request.action);
        }
        QVariantMap platformData;
        if (!request.activationToken.empty())
            platformData.insert(tokenKey, QString::fromStdString(request.activationToken));
        if (!request.startupId.empty())
            platformData.insert(startupIdKey, QString::fromStdString(request.startupId));
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
