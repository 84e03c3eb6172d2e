#include "system/desktop/portal_appearance.h"

#include "system/bus/signal_registration.h"

#include <utility>

namespace corvandi {
namespace {

const QString serviceName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString objectPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString colorSchemeKey = QStringLiteral("color-scheme");

/// `Read` wraps the value into a variant, some portals into two.
QVariant unwrapped(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

ColorScheme schemeFrom(const QVariant& value)
{
    switch (unwrapped(value).toUInt()) {
    case 1:
        return ColorScheme::dark;
    case 2:
        return ColorScheme::light;
    default:
        return ColorScheme::noPreference;
    }
}

FollowedValue::Source colorSchemeSetting()
{
    QDBusMessage question =
        QDBusMessage::createMethodCall(serviceName, objectPath, settingsInterface, QStringLiteral("Read"));
    question.setArguments({appearanceGroup, colorSchemeKey});
    return {
        .service = serviceName,
        .path = objectPath,
        .noticeInterface = settingsInterface,
        .notice = QStringLiteral("SettingChanged"),
        .noticeArguments = {appearanceGroup, colorSchemeKey},
        .question = question,
    };
}

} // namespace

PortalAppearance::PortalAppearance(QDBusConnection bus, SystemLog& log)
    : log_(log)
    , setting_(std::move(bus), colorSchemeSetting(),
               {.answered = [this](const QDBusPendingReply<QDBusVariant>& answer) { take(answer); }})
{
}

std::unique_ptr<Registration> PortalAppearance::onChange(std::function<void()> callback)
{
    return std::make_unique<SignalRegistration>(
        connect(this, &PortalAppearance::changed, this, std::move(callback)));
}

void PortalAppearance::take(const QDBusPendingReply<QDBusVariant>& reply)
{
    if (reply.isError()) {
        // Many desktops have no portal, or one without this setting: that is no trouble to tell of.
        if (reply.error().type() == QDBusError::NoReply)
            log_.write(QStringLiteral("the desktop does not say whether it is dark or light: ") +
                       reply.error().message());
        return;
    }
    const ColorScheme scheme = schemeFrom(QVariant::fromValue(reply.value()));
    if (scheme == scheme_)
        return;
    scheme_ = scheme;
    Q_EMIT changed();
}

} // namespace corvandi
