#include "system/desktop/bus_session_lock.h"

#include "system/bus/signal_registration.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace corvandi {
namespace {

/// A system bus that hangs must not hold up the end of the program.
constexpr std::chrono::milliseconds patienceAtEnd{100};

/// Each has an object and an interface of the same name.
const char* const screenSavers[] = {
    "org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver", "org.cinnamon.ScreenSaver",
    "org.mate.ScreenSaver",        "org.xfce.ScreenSaver",
};

/// A call that does not start the service.
QDBusMessage callOf(const QString& service, const QString& path, const QString& interface,
                    const QString& method)
{
    auto call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setAutoStartService(false);
    return call;
}

FollowedValue::Source screenSaver(const QString& name)
{
    const QString path = u'/' + QString(name).replace(u'.', u'/');
    return {
        .service = name,
        .path = path,
        .noticeInterface = name,
        .notice = QStringLiteral("ActiveChanged"),
        .noticeArguments = {},
        .question = callOf(name, path, name, QStringLiteral("GetActive")),
    };
}

bool isActive(const QDBusMessage& answer)
{
    return answer.arguments().value(0).toBool();
}

FollowedValue::Source lockedHint()
{
    const QString service = QStringLiteral("org.freedesktop.login1");
    const QString session = QStringLiteral("org.freedesktop.login1.Session");
    const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");
    // The caller's session, or the one with the user's screen when he is in none, as a service isn't. Its
    // notices bear the path of its number.
    auto question = callOf(service, QStringLiteral("/org/freedesktop/login1/session/auto"), properties,
                           QStringLiteral("Get"));
    question.setArguments({session, QStringLiteral("LockedHint")});
    return {
        .service = service,
        .path = {},
        .noticeInterface = properties,
        .notice = QStringLiteral("PropertiesChanged"),
        .noticeArguments = {session},
        .question = question,
    };
}

bool isHinted(const QDBusMessage& answer)
{
    return answer.arguments().value(0).value<QDBusVariant>().variant().toBool();
}

} // namespace

BusSessionLock::BusSessionLock(MainQueue& queue, QDBusConnection sessionBus, OpenBus openSystemBus)
    : worker_(QStringLiteral("system bus"), Worker::AtEnd::stop, patienceAtEnd)
{
    for (const char* name : screenSavers)
        follow(sessionBus, screenSaver(QLatin1String(name)), &isActive);
    systemBus_ = std::make_unique<Errand<QDBusConnection>>(
        worker_, queue, [open = std::move(openSystemBus)](const std::stop_token&) { return open(); },
        [this](const QDBusConnection& bus) { follow(bus, lockedHint(), &isHinted); });
}

std::unique_ptr<Registration> BusSessionLock::onChange(std::function<void()> callback)
{
    return std::make_unique<SignalRegistration>(
        connect(this, &BusSessionLock::changed, this, std::move(callback)));
}

void BusSessionLock::follow(const QDBusConnection& bus, const FollowedValue::Source& source, Reader read)
{
    Teller& teller = tellers_.emplace_back();
    teller.value = std::make_unique<FollowedValue>(
        bus, source,
        FollowedValue::Callbacks{.answered =
                                     [this, &teller, read](const QDBusPendingCall& answer) {
                                         if (!answer.isError())
                                             say(teller, read(answer.reply()));
                                     },
                                 .ownerChanged = [this, &teller] { say(teller, false); }});
}

void BusSessionLock::say(Teller& teller, bool isLocked)
{
    teller.saysLocked = isLocked;
    const bool isAny = std::ranges::any_of(tellers_, &Teller::saysLocked);
    if (isAny != std::exchange(isLocked_, isAny))
        Q_EMIT changed();
}

} // namespace corvandi
