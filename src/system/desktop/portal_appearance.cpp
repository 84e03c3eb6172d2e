#include "system/desktop/portal_appearance.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <chrono>

namespace corvandi {
namespace {

const QString serviceName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString objectPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString colorSchemeKey = QStringLiteral("color-scheme");

/// The first question may start the portal and the desktop's part behind it.
constexpr std::chrono::milliseconds answerLimit{5000};

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

class SignalRegistration : public Registration {
public:
    explicit SignalRegistration(QMetaObject::Connection connection)
        : connection_(std::move(connection))
    {
    }
    ~SignalRegistration() override { QObject::disconnect(connection_); }

private:
    QMetaObject::Connection connection_;
};

} // namespace

PortalAppearance::PortalAppearance(QDBusConnection bus, SystemLog& log)
    : bus_(std::move(bus))
    , log_(log)
{
    if (!bus_.isConnected())
        return;
    // Notices are taken from any sender, for connecting to a named one would wait for the bus; they
    // only make us ask.
    bus_.connect({}, objectPath, settingsInterface, QStringLiteral("SettingChanged"), {appearanceGroup}, {},
                 this, SLOT(onSettingChanged(QString, QString)));
    bus_.connect({}, {}, QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"),
                 {serviceName}, {}, this, SLOT(onOwnerChanged(QString, QString, QString)));
    ask();
}

std::unique_ptr<Registration> PortalAppearance::onChange(std::function<void()> callback)
{
    return std::make_unique<SignalRegistration>(
        connect(this, &PortalAppearance::changed, this, std::move(callback)));
}

void PortalAppearance::onSettingChanged(const QString& group, const QString& key)
{
    if (group == appearanceGroup && key == colorSchemeKey)
        ask();
}

void PortalAppearance::onOwnerChanged(const QString& name, const QString& oldOwner, const QString& newOwner)
{
    Q_UNUSED(name)
    Q_UNUSED(oldOwner)
    if (!newOwner.isEmpty())
        ask();
}

void PortalAppearance::ask()
{
    auto call =
        QDBusMessage::createMethodCall(serviceName, objectPath, settingsInterface, QStringLiteral("Read"));
    call.setArguments({appearanceGroup, colorSchemeKey});
    question_ = new QDBusPendingCallWatcher(bus_.asyncCall(call, answerLimit.count()), this);
    connect(question_, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* question) { take(*question); });
}

void PortalAppearance::take(QDBusPendingCallWatcher& question)
{
    question.deleteLater();
    if (&question != question_)
        return;
    question_ = nullptr;
    const QDBusPendingReply<QDBusVariant> reply = question;
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
