#include "system/accessibility/accessibility_status.h"

#include <QDBusPendingCallWatcher>

#include <chrono>

namespace corvandi {
namespace {

const QString serviceName = QStringLiteral("org.a11y.Bus");
const QString objectPath = QStringLiteral("/org/a11y/bus");
const QString statusInterface = QStringLiteral("org.a11y.Status");
const QString isEnabledProperty = QStringLiteral("IsEnabled");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

constexpr std::chrono::milliseconds answerLimit{5000};

QDBusMessage propertyCall(const QString& method, const QVariantList& arguments)
{
    auto message = QDBusMessage::createMethodCall(serviceName, objectPath, propertiesInterface, method);
    message.setArguments(arguments);
    return message;
}

FollowedValue::Source isEnabledSource()
{
    return {
        .service = serviceName,
        .path = objectPath,
        .noticeInterface = propertiesInterface,
        .notice = QStringLiteral("PropertiesChanged"),
        .noticeArguments = {statusInterface},
        .question = propertyCall(QStringLiteral("Get"), {statusInterface, isEnabledProperty}),
    };
}

} // namespace

AccessibilityStatus::AccessibilityStatus(QDBusConnection bus, SystemLog& log)
    : bus_(std::move(bus))
    , log_(log)
    , isEnabled_(bus_, isEnabledSource(),
                 {.answered = [this](const QDBusPendingReply<QDBusVariant>& answer) { take(answer); },
                  .ownerChanged = [this] { state_ = State::unknown; }})
{
    if (!hasBus())
        logOnce(QStringLiteral("no session bus, so the accessibility service can't be reached"));
}

AccessibilityStatus::State AccessibilityStatus::state() const
{
    return hasBus() ? state_ : State::unknown;
}

void AccessibilityStatus::refresh()
{
    if (hasBus() && state_ == State::unknown && !isAsking())
        isEnabled_.ask();
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
            isEnabled_.ask();
    });
}

void AccessibilityStatus::take(const QDBusPendingReply<QDBusVariant>& reply)
{
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
