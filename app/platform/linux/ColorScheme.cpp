// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/ColorScheme.h"
#include "app/platform/linux/SessionBus.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr auto kService = "org.freedesktop.portal.Desktop"_L1;
constexpr auto kObject = "/org/freedesktop/portal/desktop"_L1;
constexpr auto kInterface = "org.freedesktop.portal.Settings"_L1;
constexpr auto kNamespace = "org.freedesktop.appearance"_L1;
constexpr auto kScheme = "color-scheme"_L1;
constexpr auto kContrast = "contrast"_L1;
constexpr auto kAccent = "accent-color"_L1;

/// The portal wraps the answer to a question once more than the value of a change.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

ColorScheme::Preference preferenceOf(const QVariant& value)
{
    switch (value.toUInt()) {
    case 1:
        return ColorScheme::Preference::Dark;
    case 2:
        return ColorScheme::Preference::Light;
    default:
        return ColorScheme::Preference::Unknown;
    }
}

/// Reads three numbers from 0 to 1. Others mean that no accent is set.
std::optional<ColorScheme::Color> accentOf(const QVariant& value)
{
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return std::nullopt;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != u"(ddd)"_s)
        return std::nullopt;
    ColorScheme::Color parts{};
    argument.beginStructure();
    for (float& part : parts) {
        double read = 0;
        argument >> read;
        part = static_cast<float>(read);
    }
    argument.endStructure();
    const bool isColor = std::ranges::all_of(parts, [](float part) { return part >= 0 && part <= 1; });
    return isColor ? std::optional(parts) : std::nullopt;
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
        for (const auto key : {kScheme, kContrast, kAccent})
            ask(bus, key);
    }

private Q_SLOTS:
    void settingChanged(const QDBusMessage& change)
    {
        const auto arguments = change.arguments();
        if (arguments.size() == 3 && arguments[0].toString() == kNamespace)
            take(arguments[1].toString(), unwrapped(arguments[2]));
    }

private:
    void ask(const QDBusConnection& bus, QLatin1StringView key)
    {
        auto question = QDBusMessage::createMethodCall(kService, kObject, kInterface, u"Read"_s);
        question << QString(kNamespace) << QString(key);
        auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
        connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, key] {
            answer->deleteLater();
            if (const QDBusPendingReply<QDBusVariant> reply = *answer; reply.isValid())
                take(key, unwrapped(reply.value().variant()));
        });
    }

    void take(const QString& key, const QVariant& value)
    {
        Look look = scheme_.look_;
        if (key == kScheme)
            look.preference = preferenceOf(value);
        else if (key == kContrast)
            look.wantsHighContrast = value.toUInt() == 1;
        else if (key == kAccent)
            look.accent = accentOf(value);
        scheme_.set(look);
    }

    ColorScheme& scheme_;
};

ColorScheme::ColorScheme(QObject* parent) : QObject(parent), source_(std::make_unique<Source>(*this)) {}

ColorScheme::~ColorScheme() = default;

void ColorScheme::set(const Look& look)
{
    if (std::exchange(look_, look) != look)
        Q_EMIT changed();
}

} // namespace plovik

#include "ColorScheme.moc"
