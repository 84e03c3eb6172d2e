#include "panes/permission_rows.h"

#include "support/fake_accessibility.h"
#include "support/fake_session.h"
#include "support/fake_system_settings.h"

#include <gmock/gmock.h>

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

} // namespace
} // namespace corvandi
