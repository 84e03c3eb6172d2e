#include "panes/welcome.h"

#include "support/fake_accessibility.h"
#include "support/fake_session.h"
#include "support/virtual_queue.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

class WelcomeTest : public ::testing::Test {
protected:
    WelcomeTest()
    {
        capture.present = AuthorizationStatus::notDetermined;
        accessibility.trusted = false;
    }

    testing::FakeCaptureAuthorization capture;
    testing::FakeAccessibility accessibility;
    testing::VirtualQueue queue;
    PermissionsModel permissions{capture, accessibility};
    int started = 0;
    Welcome welcome{permissions, queue, [this] { ++started; }};
};

TEST_F(WelcomeTest, TheButtonContinuesUntilBothAreGranted)
{
    welcome.appear();
    EXPECT_EQ(welcome.buttonTitle(), QStringLiteral("Continue"));
    accessibility.trusted = true;
    queue.advance(1s);
    EXPECT_EQ(welcome.buttonTitle(), QStringLiteral("Continue"));
    capture.present = AuthorizationStatus::authorized;
    queue.advance(1s);
    EXPECT_EQ(welcome.buttonTitle(), QStringLiteral("Get Started"));
}

TEST_F(WelcomeTest, TheOrderOfTheGrantsDoesNotMatter)
{
    welcome.appear();
    capture.present = AuthorizationStatus::authorized;
    queue.advance(1s);
    EXPECT_EQ(welcome.buttonTitle(), QStringLiteral("Continue"));
    accessibility.trusted = true;
    queue.advance(1s);
    EXPECT_EQ(welcome.buttonTitle(), QStringLiteral("Get Started"));
}

TEST_F(WelcomeTest, AppearingLooksAtThePermissionsAtOnce)
{
    capture.present = AuthorizationStatus::authorized;
    accessibility.trusted = true;
    welcome.appear();
    EXPECT_EQ(welcome.buttonTitle(), QStringLiteral("Get Started"));
}

TEST_F(WelcomeTest, AGrantShowsAfterASecondAtMost)
{
    welcome.appear();
    accessibility.trusted = true;
    queue.advance(999ms);
    EXPECT_EQ(permissions.accessibility(), PermissionState::denied);
    queue.advance(1ms);
    EXPECT_EQ(permissions.accessibility(), PermissionState::granted);
}

TEST_F(WelcomeTest, OnceBothAreGrantedNobodyIsAskedAnyMore)
{
    capture.present = AuthorizationStatus::authorized;
    accessibility.trusted = true;
    welcome.appear();
    const int checks = accessibility.silentChecks;
    queue.advance(10s);
    EXPECT_EQ(accessibility.silentChecks, checks);
}

TEST_F(WelcomeTest, OffTheScreenNobodyIsAsked)
{
    welcome.appear();
    welcome.disappear();
    const int checks = accessibility.silentChecks;
    queue.advance(10s);
    EXPECT_EQ(accessibility.silentChecks, checks);
    EXPECT_EQ(queue.timerCount(), 0U);
}

TEST_F(WelcomeTest, AGrantFromTheRowShowsWithTheAnswer)
{
    welcome.appear();
    capture.present = AuthorizationStatus::authorized;
    welcome.rows().microphone.grant();
    EXPECT_EQ(welcome.rows().microphone.state, PermissionState::granted);
}

TEST_F(WelcomeTest, ItIsCompletedWithOrWithoutPermissions)
{
    welcome.appear();
    welcome.getStarted();
    EXPECT_EQ(started, 1);
    capture.present = AuthorizationStatus::authorized;
    accessibility.trusted = true;
    queue.advance(1s);
    welcome.getStarted();
    EXPECT_EQ(started, 2);
}

} // namespace
} // namespace corvandi
