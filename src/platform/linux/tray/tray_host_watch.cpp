#include "platform/linux/tray/tray_host_watch.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>

#include <utility>

namespace corvandi {
namespace {

constexpr QLatin1String itemHostName("org.kde.StatusNotifierWatcher");
constexpr std::chrono::milliseconds atOnce{0};

QDBusMessage questionForItemHost()
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    question << QString(itemHostName);
    return question;
}

} // namespace

TrayHostWatch::TrayHostWatch(MainQueue& queue, Callbacks callbacks)
    : queue_(queue)
    , callbacks_(std::move(callbacks))
    , windowHost_([this] { windowHostAppeared(); })
{
    if (QDBusConnection::sessionBus().isConnected())
        askTheBus();
    else
        timer_ = queue_.after(atOnce, [this] { lookForWindowHost(); });
}

void TrayHostWatch::askTheBus()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    itemHosts_.setConnection(bus);
    itemHosts_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    itemHosts_.addWatchedService(itemHostName);
    QObject::connect(&itemHosts_, &QDBusServiceWatcher::serviceRegistered, &itemHosts_,
                     [this] { itemHostAppeared(); });
    answer_.emplace(bus.asyncCall(questionForItemHost()));
    QObject::connect(&*answer_, &QDBusPendingCallWatcher::finished, &*answer_, [this] { takeAnswer(); });
}

void TrayHostWatch::takeAnswer()
{
    const QDBusPendingReply<bool> isThere = *answer_;
    if (isThere.isValid() && isThere.value())
        itemHostAppeared();
    else if (!hasItemHost_)
        lookForWindowHost();
}

void TrayHostWatch::lookForWindowHost()
{
    if (windowHost_.isThere())
        windowHostAppeared();
    else
        callbacks_.notYet();
}

void TrayHostWatch::itemHostAppeared()
{
    hasItemHost_ = true;
    reportAfter(atOnce);
}

void TrayHostWatch::windowHostAppeared()
{
    if (!hasItemHost_)
        reportAfter(grace);
}

void TrayHostWatch::reportAfter(std::chrono::milliseconds delay)
{
    timer_ = queue_.after(delay, [found = callbacks_.found] { found(); });
}

} // namespace corvandi
