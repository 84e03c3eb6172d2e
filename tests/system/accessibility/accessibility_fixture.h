#pragma once

#include "system/accessibility/at_spi_accessibility_client.h"

#include <QDBusMessage>
#include <QDBusVariant>

#include <gtest/gtest.h>

namespace corvandi::testing {

/// A person who is asked, and answers when the test says so.
class Person {
public:
    [[nodiscard]] AtSpiAccessibilityClient::Person way()
    {
        return {.ask =
                    [this](AtSpiAccessibilityClient::Answer answer) {
                        ++timesAsked;
                        pending = std::move(answer);
                    },
                .remind = [this] { ++timesReminded; }};
    }

    int timesAsked = 0;
    int timesReminded = 0;
    AtSpiAccessibilityClient::Answer pending;
};

/// Switches the accessibility service on or off as some other program would.
inline void setEnabled(QDBusConnection bus, const QVariant& isEnabled)
{
    auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Set"));
    call.setArguments({QStringLiteral("org.a11y.Status"), QStringLiteral("IsEnabled"),
                       QVariant::fromValue(QDBusVariant(isEnabled))});
    const QDBusMessage reply = bus.call(call);
    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
}

} // namespace corvandi::testing
