#include "settings_fixture.h"

#include "views/settings/permissions_pane_view.h"

namespace corvandi::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const QString grantMicrophone = QStringLiteral("Grant Microphone");
const QString grantAccessibility = QStringLiteral("Grant Accessibility");
const QString granted = QStringLiteral("Granted");

class PermissionViewsTest : public SettingsFixture {
protected:
    PermissionViewsTest()
    {
        parts.microphone.present = AuthorizationStatus::notDetermined;
        parts.accessibility.trusted = false;
    }
    [[nodiscard]] static bool offers(const QWidget& view, const QString& name)
    {
        return named<QPushButton>(view, name).isVisible();
    }
};

TEST_F(PermissionViewsTest, ThePaneLooksWhenItIsShown)
{
    PermissionsPaneView view(parts.permissionsPane);
    parts.accessibility.trusted = true;
    ASSERT_TRUE(isShown(view));
    EXPECT_TRUE(offers(view, grantMicrophone));
    EXPECT_FALSE(offers(view, grantAccessibility));
    EXPECT_TRUE(shows(view, granted));
    EXPECT_TRUE(shows(view, PermissionsPane::note()));
}

TEST_F(PermissionViewsTest, ComingBackFromTheDesktopsSettingsUpdatesTheRow)
{
    PermissionsPaneView view(parts.permissionsPane);
    ASSERT_TRUE(isShown(view));
    auto& button = named<QPushButton>(view, grantAccessibility);
    EXPECT_EQ(button.text(), QStringLiteral("Grant"));
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(parts.accessibility.promptingChecks, 1);
    EXPECT_THAT(parts.systemSettings.opened, ElementsAre(SystemSettingsPage::accessibility));

    parts.accessibility.trusted = true;
    EXPECT_TRUE(button.isVisible());
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    EXPECT_FALSE(button.isVisible());
    EXPECT_TRUE(shows(view, granted));
}

TEST_F(PermissionViewsTest, ARefusedMicrophoneKeepsItsButton)
{
    parts.microphone.present = AuthorizationStatus::denied;
    PermissionsPaneView view(parts.permissionsPane);
    ASSERT_TRUE(isShown(view));
    QTest::mouseClick(&named<QPushButton>(view, grantMicrophone), Qt::LeftButton);
    EXPECT_TRUE(offers(view, grantMicrophone));
}

TEST_F(PermissionViewsTest, TheWelcomeMarksAGrantWithoutWords)
{
    WelcomeView view(parts.makeWelcome());
    ASSERT_TRUE(isShown(view));
    parts.accessibility.trusted = true;
    parts.queue.advance(1s);
    EXPECT_FALSE(offers(view, grantAccessibility));
    EXPECT_FALSE(shows(view, granted));
    const auto widgets = view.findChildren<QWidget*>();
    EXPECT_EQ(std::count_if(widgets.begin(), widgets.end(),
                            [](const QWidget* widget) {
                                return widget->isVisible() && widget->accessibleName() == granted;
                            }),
              1)
        << "the mark has a name all the same";
}

TEST_F(PermissionViewsTest, TheWelcomesButtonCompletesItAtAnyTime)
{
    WelcomeView view(parts.makeWelcome());
    ASSERT_TRUE(isShown(view));
    auto& button = named<QPushButton>(view, QStringLiteral("Continue"));
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(parts.started, 1);
    parts.accessibility.trusted = true;
    parts.microphone.present = AuthorizationStatus::authorized;
    parts.queue.advance(1s);
    EXPECT_EQ(button.text(), QStringLiteral("Get Started"));
    QTest::keyClick(&button, Qt::Key_Return);
    EXPECT_EQ(parts.started, 2);
}

TEST_F(PermissionViewsTest, TheWelcomeOnlyAsksForAccessibility)
{
    WelcomeView view(parts.makeWelcome());
    ASSERT_TRUE(isShown(view));
    QTest::mouseClick(&named<QPushButton>(view, grantAccessibility), Qt::LeftButton);
    EXPECT_EQ(parts.accessibility.promptingChecks, 1);
    EXPECT_THAT(parts.systemSettings.opened, IsEmpty());
}

TEST_F(PermissionViewsTest, OffTheScreenTheWelcomeLooksNoMore)
{
    WelcomeView view(parts.makeWelcome());
    ASSERT_TRUE(isShown(view));
    EXPECT_EQ(parts.queue.timerCount(), 1U);
    view.hide();
    EXPECT_EQ(parts.queue.timerCount(), 0U);
}

TEST_F(PermissionViewsTest, TheWelcomeHasItsWidthAndSaysWhatTheProgramDoes)
{
    WelcomeView view(parts.makeWelcome());
    ASSERT_TRUE(isShown(view));
    EXPECT_EQ(view.width(), 420);
    EXPECT_EQ(view.layout()->contentsMargins(), QMargins(28, 28, 28, 28));
    EXPECT_EQ(view.layout()->spacing(), 20);
    EXPECT_TRUE(shows(view, QStringLiteral("Welcome to Corvandi")));
    EXPECT_TRUE(
        shows(view, QStringLiteral("Hold your hotkey, speak, and your words are inserted wherever you "
                                   "are typing. Everything runs on-device.")));
}

} // namespace
} // namespace corvandi::testing
