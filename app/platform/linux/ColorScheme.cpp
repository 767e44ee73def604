// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/ColorScheme.h"
#include "app/platform/linux/SessionBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr auto kService = "org.freedesktop.portal.Desktop"_L1;
constexpr auto kObject = "/org/freedesktop/portal/desktop"_L1;
constexpr auto kInterface = "org.freedesktop.portal.Settings"_L1;
constexpr auto kNamespace = "org.freedesktop.appearance"_L1;
constexpr auto kKey = "color-scheme"_L1;

ColorScheme::Preference preferenceOf(QVariant value)
{
    // The portal wraps the answer to a question once more than the value of a change.
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    switch (value.toUInt()) {
    case 1:
        return ColorScheme::Preference::Dark;
    case 2:
        return ColorScheme::Preference::Light;
    default:
        return ColorScheme::Preference::Unknown;
    }
}

} // namespace

/// The settings portal.
class ColorScheme::Source : public QObject {
    Q_OBJECT

public:
    explicit Source(ColorScheme& scheme) : scheme_(scheme)
    {
        if (!hasSessionBus())
            return;
        auto bus = QDBusConnection::sessionBus();
        bus.connect(kService, kObject, kInterface, u"SettingChanged"_s, this, SLOT(settingChanged(QDBusMessage)));
        auto question = QDBusMessage::createMethodCall(kService, kObject, kInterface, u"Read"_s);
        question << QString(kNamespace) << QString(kKey);
        auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
        connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
            answer->deleteLater();
            if (const QDBusPendingReply<QDBusVariant> reply = *answer; reply.isValid())
                scheme_.set(preferenceOf(reply.value().variant()));
        });
    }

private Q_SLOTS:
    void settingChanged(const QDBusMessage& change)
    {
        const auto arguments = change.arguments();
        if (arguments.size() == 3 && arguments[0].toString() == kNamespace && arguments[1].toString() == kKey)
            scheme_.set(preferenceOf(arguments[2]));
    }

private:
    ColorScheme& scheme_;
};

ColorScheme::ColorScheme(QObject* parent) : QObject(parent), source_(std::make_unique<Source>(*this)) {}

ColorScheme::~ColorScheme() = default;

void ColorScheme::set(Preference preference)
{
    if (std::exchange(preference_, preference) != preference)
        Q_EMIT changed(preference);
}

} // namespace plovik

#include "ColorScheme.moc"
