#include "system/accessibility/accessibility_status.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <chrono>

namespace corvandi {
namespace {

const QString serviceName = QStringLiteral("org.a11y.Bus");
const QString objectPath = QStringLiteral("/org/a11y/bus");
const QString statusInterface = QStringLiteral("org.a11y.Status");
const QString isEnabledProperty = QStringLiteral("IsEnabled");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

/// The first question may start the service, which takes some 100 ms on a busy machine.
constexpr std::chrono::milliseconds answerLimit{5000};

QDBusMessage propertyCall(const QString& method, const QVariantList& arguments)
{
    auto message = QDBusMessage::createMethodCall(serviceName, objectPath, propertiesInterface, method);
    message.setArguments(arguments);
    return message;
}

} // namespace

AccessibilityStatus::AccessibilityStatus(QDBusConnection bus, SystemLog& log)
    : bus_(std::move(bus))
    , log_(log)
{
    if (!hasBus()) {
        logOnce(QStringLiteral("no session bus, so the accessibility service can't be reached"));
        return;
    }
    // Notices are taken from any sender, for connecting to a named one would wait for the bus; they
    // only make us ask.
    bus_.connect({}, objectPath, propertiesInterface, QStringLiteral("PropertiesChanged"), {statusInterface},
                 {}, this, SLOT(onPropertiesChanged()));
    bus_.connect({}, {}, QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"),
                 {serviceName}, {}, this, SLOT(onOwnerChanged(QString, QString, QString)));
    ask();
}

AccessibilityStatus::State AccessibilityStatus::state() const
{
    return hasBus() ? state_ : State::unknown;
}

void AccessibilityStatus::refresh()
{
    if (hasBus() && state_ == State::unknown && !isAsking())
        ask();
}

void AccessibilityStatus::enable()
{
    const QVariant value = QVariant::fromValue(QDBusVariant(true));
    const auto call = propertyCall(QStringLiteral("Set"), {statusInterface, isEnabledProperty, value});
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, answerLimit.count()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        if (watcher->isError())
            log_.write(QStringLiteral("accessibility could not be switched on: ") +
                       watcher->error().message());
        else
            ask();
    });
}

void AccessibilityStatus::onPropertiesChanged()
{
    ask();
}

void AccessibilityStatus::onOwnerChanged(const QString& name, const QString& oldOwner,
                                         const QString& newOwner)
{
    Q_UNUSED(name)
    Q_UNUSED(oldOwner)
    state_ = State::unknown;
    if (!newOwner.isEmpty())
        ask();
}

void AccessibilityStatus::ask()
{
    const auto call = propertyCall(QStringLiteral("Get"), {statusInterface, isEnabledProperty});
    question_ = new QDBusPendingCallWatcher(bus_.asyncCall(call, answerLimit.count()), this);
    connect(question_, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* question) { take(*question); });
}

void AccessibilityStatus::take(QDBusPendingCallWatcher& question)
{
    question.deleteLater();
    if (&question != question_)
        return;
    question_ = nullptr;
    const QDBusPendingReply<QDBusVariant> reply = question;
    if (reply.isError()) {
        state_ = State::unknown;
        logOnce(QStringLiteral("the accessibility service does not answer: ") + reply.error().message());
    } else {
        state_ = reply.value().variant().toBool() ? State::enabled : State::disabled;
        lastProblem_.clear();
    }
    Q_EMIT answered();
}

void AccessibilityStatus::logOnce(const QString& problem)
{
    if (problem != lastProblem_)
        log_.write(problem);
    lastProblem_ = problem;
}

} // namespace corvandi
