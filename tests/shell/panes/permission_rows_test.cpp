#include "shell/panes/permission_rows.h"
#include "support/fake_accessibility.h"
#include "support/fake_session.h"
#include "support/fake_system_settings.h"
#include "support/virtual_queue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvandi {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PermissionRowsTest : public ::testing::Test {
protected:
    testing::FakeCaptureAuthorization capture;
    testing::FakeAccessibility accessibility;
    testing::FakeSystemSettings systemSettings;
    PermissionsModel permissions{capture, accessibility};
    PermissionsPane pane{permissions, systemSettings};
};

TEST_F(PermissionRowsTest, ThePaneNamesBothPermissions)
{
    const PermissionRows rows = pane.rows();
    EXPECT_EQ(rows.microphone.title, QStringLiteral("Microphone"));
    EXPECT_EQ(rows.microphone.detail, QStringLiteral("Captures audio while you dictate."));
    EXPECT_EQ(rows.accessibility.title, QStringLiteral("Accessibility"));
    EXPECT_EQ(rows.accessibility.detail,
              QStringLiteral("Lets Corvandi capture the global hotkey and insert text."));
    EXPECT_EQ(PermissionsPane::note(),
              QStringLiteral("Corvandi runs entirely on-device. If a permission gets reset, you can grant it "
                             "again here."));
}

TEST_F(PermissionRowsTest, RowsShowTheModelsStates)
{
    EXPECT_EQ(pane.rows().microphone.state, PermissionState::notDetermined);
    EXPECT_EQ(pane.rows().accessibility.state, PermissionState::denied);
    permissions.refresh();
    EXPECT_EQ(pane.rows().microphone.state, PermissionState::granted);
    EXPECT_EQ(pane.rows().accessibility.state, PermissionState::granted);
}

TEST_F(PermissionRowsTest, GrantingTheMicrophoneUpdatesTheModelWithTheAnswer)
{
    pane.rows().microphone.grant();
    EXPECT_EQ(permissions.microphone(), PermissionState::granted);
    EXPECT_THAT(systemSettings.opened, IsEmpty());
}

TEST_F(PermissionRowsTest, AMicrophoneThatWasRefusedStaysRefused)
{
    capture.present = AuthorizationStatus::denied;
    pane.rows().microphone.grant();
    EXPECT_EQ(pane.rows().microphone.state, PermissionState::denied);
}

TEST_F(PermissionRowsTest, GrantingAccessibilityAsksAndOpensTheDesktopsSettings)
{
    accessibility.trusted = false;
    pane.rows().accessibility.grant();
    EXPECT_EQ(accessibility.promptingChecks, 1);
    EXPECT_THAT(systemSettings.opened, ElementsAre(SystemSettingsPage::accessibility));
    EXPECT_EQ(pane.rows().accessibility.state, PermissionState::denied);
}

TEST_F(PermissionRowsTest, AccessibilityThatWasGrantedElsewhereShowsAtTheNextRefresh)
{
    accessibility.trusted = false;
    permissions.refresh();
    accessibility.trusted = true;
    EXPECT_EQ(pane.rows().accessibility.state, PermissionState::denied);
    permissions.refresh();
    EXPECT_EQ(pane.rows().accessibility.state, PermissionState::granted);
}

TEST_F(PermissionRowsTest, TheWelcomeOnlyAsks)
{
    const PermissionRows rows = welcomeRows(permissions);
    EXPECT_EQ(rows.accessibility.detail, QStringLiteral("Captures the global hotkey and inserts text."));
    EXPECT_EQ(rows.microphone.detail, QStringLiteral("Captures audio while you dictate."));
    rows.accessibility.grant();
    rows.microphone.grant();
    EXPECT_EQ(accessibility.promptingChecks, 1);
    EXPECT_EQ(permissions.microphone(), PermissionState::granted);
    EXPECT_THAT(systemSettings.opened, IsEmpty());
}

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
