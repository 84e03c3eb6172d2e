#include "platform/linux/audio/pulse_capture_authorization.h"

#include "recorder.h"

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

TEST_F(CaptureAuthorizationTest, InASandboxWithoutAPermissionStoreNothingIsDetermined)
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
