#include "system/bus/followed_value.h"

#include <QDBusPendingCallWatcher>

#include <chrono>
#include <utility>

namespace corvandi {
namespace {

/// A question may start the service and others behind it, which takes some 100 ms on a busy machine.
constexpr std::chrono::milliseconds answerLimit{5000};

} // namespace

FollowedValue::FollowedValue(QDBusConnection bus, Source source, Callbacks callbacks)
    : bus_(std::move(bus))
    , source_(std::move(source))
    , callbacks_(std::move(callbacks))
{
    if (!bus_.isConnected())
        return;
    // Notices are taken from any sender, for connecting to a named one would wait for the bus; they
    // only make us ask.
    bus_.connect({}, source_.path, source_.noticeInterface, source_.notice, source_.noticeArguments, {}, this,
                 SLOT(onNotice()));
    bus_.connect({}, {}, QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"),
                 {source_.service}, {}, this, SLOT(onOwnerChanged(QString, QString, QString)));
    ask();
}

void FollowedValue::ask()
{
    question_ = new QDBusPendingCallWatcher(bus_.asyncCall(source_.question, answerLimit.count()), this);
    connect(question_, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* question) { take(*question); });
}

void FollowedValue::onNotice()
{
    ask();
}

void FollowedValue::onOwnerChanged(const QString& name, const QString& oldOwner, const QString& newOwner)
{
    Q_UNUSED(name)
    Q_UNUSED(oldOwner)
    callbacks_.ownerChanged();
    if (!newOwner.isEmpty())
        ask();
}

void FollowedValue::take(QDBusPendingCallWatcher& question)
{
    question.deleteLater();
    if (&question != question_)
        return;
    question_ = nullptr;
    callbacks_.answered(question);
}

} // namespace corvandi
