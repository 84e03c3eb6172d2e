#include "system/desktop/tray_host_watch.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <limits>
#include <utility>

namespace corvandi {
namespace {

const QString& watcherName()
{
    static const QString name = QStringLiteral("org.kde.StatusNotifierWatcher");
    return name;
}

const QString& watcherPath()
{
    static const QString path = QStringLiteral("/StatusNotifierWatcher");
    return path;
}

/// Whether the service has somebody who shows the items. It is not started for that.
QDBusMessage question()
{
    QDBusMessage message = QDBusMessage::createMethodCall(watcherName(), watcherPath(),
                                                          QStringLiteral("org.freedesktop.DBus.Properties"),
                                                          QStringLiteral("Get"));
    message << watcherName() << QStringLiteral("IsStatusNotifierHostRegistered");
    message.setAutoStartService(false);
    return message;
}

} // namespace

ItemTray::ItemTray(std::function<void(bool isThere)> answered)
    : answered_(std::move(answered))
{
    if (!isBusThere())
        return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    service_.setConnection(bus);
    service_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    service_.addWatchedService(watcherName());
    connect(&service_, &QDBusServiceWatcher::serviceRegistered, this, &ItemTray::ask);
    bus.connect(watcherName(), watcherPath(), watcherName(), QStringLiteral("StatusNotifierHostRegistered"),
                this, SLOT(ask()));
    ask();
}

bool ItemTray::isBusThere() const
{
    return QDBusConnection::sessionBus().isConnected();
}

void ItemTray::ask()
{
    constexpr int forEver = std::numeric_limits<int>::max();
    answer_.emplace(QDBusConnection::sessionBus().asyncCall(question(), forEver));
    connect(&*answer_, &QDBusPendingCallWatcher::finished, this, &ItemTray::takeAnswer);
}

void ItemTray::takeAnswer()
{
    const QDBusPendingReply<QDBusVariant> reply = *answer_;
    answered_(reply.isValid() && reply.value().variant().toBool());
}

namespace {

constexpr std::chrono::milliseconds atOnce{0};

} // namespace

TrayHostWatch::TrayHostWatch(MainQueue& queue, WindowTray& windowTray, Callbacks callbacks)
    : queue_(queue)
    , callbacks_(std::move(callbacks))
    , windowTray_(windowTray)
    , windowTrayWatch_(windowTray.watch([this] { windowTrayAppeared(); }))
    , itemTray_([this](bool isThere) { itemTrayAnswered(isThere); })
{
    if (!itemTray_.isBusThere())
        timer_ = queue_.after(atOnce, [this] { lookForWindowTray(); });
}

void TrayHostWatch::itemTrayAnswered(bool isThere)
{
    if (isThere)
        reportAfter(atOnce);
    else
        lookForWindowTray();
}

void TrayHostWatch::lookForWindowTray()
{
    if (windowTray_.isThere())
        windowTrayAppeared();
    else if (!std::exchange(isMissReported_, true))
        callbacks_.notYet();
}

void TrayHostWatch::windowTrayAppeared()
{
    // The answer decides; it comes back here when it is no.
    if (!itemTray_.isAsking())
        reportAfter(grace);
}

void TrayHostWatch::reportAfter(std::chrono::milliseconds delay)
{
    timer_ = queue_.after(delay, [this] {
        // A tray of the newer kind has started in the meantime.
        if (itemTray_.isAsking())
            return;
        const std::function<void()> found = callbacks_.found;
        found();
    });
}

} // namespace corvandi
