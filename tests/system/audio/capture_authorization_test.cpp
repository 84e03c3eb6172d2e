#include "system/audio/pulse_capture_authorization.h"

#include "recorder.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <gtest/gtest.h>

namespace corvandi {
namespace {

using testing::waitUntil;

class CaptureAuthorizationTest : public ::testing::Test {
protected:
    testing::Recorder recorder;
};

TEST_F(CaptureAuthorizationTest, OutsideOfASandboxTheMicrophoneIsFree)
{
    PulseCaptureAuthorization authorization(recorder.server, recorder.queue, std::nullopt);
    EXPECT_EQ(authorization.status(), AuthorizationStatus::authorized);
}

TEST_F(CaptureAuthorizationTest, TheAnswerToARequestComesLater)
{
    PulseCaptureAuthorization authorization(recorder.server, recorder.queue, std::nullopt);
    std::optional<bool> granted;
    authorization.requestAccess([&](bool isGranted) { granted = isGranted; });
    EXPECT_FALSE(granted);
    ASSERT_TRUE(waitUntil([&] { return granted.has_value(); }));
    EXPECT_TRUE(*granted);
}

/// Has the desktop's permission store note what the person decided; false when there is no store.
bool decide(const QString& applicationId, const QString& permission)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.impl.portal.PermissionStore"),
        QStringLiteral("/org/freedesktop/impl/portal/PermissionStore"),
        QStringLiteral("org.freedesktop.impl.portal.PermissionStore"), QStringLiteral("SetPermission"));
    call << QStringLiteral("devices") << true << QStringLiteral("microphone") << applicationId
         << QStringList{permission};
    return QDBusConnection::sessionBus().call(call).type() == QDBusMessage::ReplyMessage;
}

TEST_F(CaptureAuthorizationTest, InASandboxThePermissionStoreDecides)
{
    const QString id = QStringLiteral("org.example.Sandboxed");
    if (!decide(id, QStringLiteral("no")))
        GTEST_SKIP() << "no permission store is installed (package xdg-desktop-portal)";
    PulseCaptureAuthorization authorization(recorder.server, recorder.queue, id);
    EXPECT_TRUE(waitUntil([&] { return authorization.status() == AuthorizationStatus::denied; }));
    ASSERT_TRUE(decide(id, QStringLiteral("yes")));
    EXPECT_TRUE(waitUntil([&] { return authorization.status() == AuthorizationStatus::authorized; }));
    ASSERT_TRUE(decide(id, QStringLiteral("ask")));
    EXPECT_TRUE(waitUntil([&] { return authorization.status() == AuthorizationStatus::notDetermined; }));
}

TEST_F(CaptureAuthorizationTest, ARequestInASandboxIsAnsweredByTheStore)
{
    const QString id = QStringLiteral("org.example.Asking");
    if (!decide(id, QStringLiteral("no")))
        GTEST_SKIP() << "no permission store is installed (package xdg-desktop-portal)";
    PulseCaptureAuthorization authorization(recorder.server, recorder.queue, id);
    std::optional<bool> granted;
    authorization.requestAccess([&](bool isGranted) { granted = isGranted; });
    ASSERT_TRUE(waitUntil([&] { return granted.has_value(); }));
    EXPECT_FALSE(*granted);
}

TEST_F(CaptureAuthorizationTest, AnApplicationOfWhichTheStoreKnowsNothingIsNotDetermined)
{
    PulseCaptureAuthorization authorization(recorder.server, recorder.queue,
                                            QStringLiteral("io.corvandi.Corvandi"));
    std::optional<bool> granted;
    authorization.requestAccess([&](bool isGranted) { granted = isGranted; });
    ASSERT_TRUE(waitUntil([&] { return granted.has_value(); }));
    EXPECT_TRUE(*granted);
    EXPECT_EQ(authorization.status(), AuthorizationStatus::notDetermined);
}

} // namespace
} // namespace corvandi
