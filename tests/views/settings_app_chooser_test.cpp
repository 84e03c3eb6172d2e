#include "settings_fixture.h"

#include "settings_ui/app_chooser.h"
#include "support/fake_application_directory.h"
#include "support/fake_session.h"

namespace corvandi::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AppChooserTest : public ::testing::Test {
protected:
    AppChooserTest()
    {
        applications.installed = {{QStringLiteral("b"), QStringLiteral("Beta"), {}},
                                  {QStringLiteral("a"), QStringLiteral("Alpha"), {}}};
    }
    [[nodiscard]] AppChooser& open()
    {
        AppChooser::open(catalog, window, [this](const AppInfo& app) { picked.push_back(app.bundleID); });
        return *window.findChild<AppChooser*>();
    }
    [[nodiscard]] static QListWidget& listOf(const AppChooser& chooser)
    {
        return *chooser.findChild<QListWidget*>();
    }
    static void press(const AppChooser& chooser, const char* button)
    {
        QTest::mouseClick(&named<QPushButton>(chooser, QString::fromLatin1(button)), Qt::LeftButton);
    }

    FakeApplicationDirectory applications;
    FakeWorkspace workspace;
    AppCatalog catalog{applications, workspace, Locale(QStringLiteral("en-US"))};
    QWidget window;
    std::vector<QString> picked;
};

TEST_F(AppChooserTest, TheSelectedApplicationIsPickedByTheButton)
{
    ASSERT_TRUE(isShown(window));
    AppChooser& chooser = open();
    EXPECT_FALSE(named<QPushButton>(chooser, QStringLiteral("Choose")).isEnabled());
    EXPECT_EQ(listOf(chooser).item(0)->text(), QStringLiteral("Alpha"));
    listOf(chooser).item(1)->setSelected(true);
    press(chooser, "Choose");
    EXPECT_THAT(picked, ElementsAre(QStringLiteral("b")));
    EXPECT_FALSE(chooser.isVisible());
}

TEST_F(AppChooserTest, TypingNarrowsTheListDownAndWhatIsHiddenIsNotPicked)
{
    ASSERT_TRUE(isShown(window));
    AppChooser& chooser = open();
    listOf(chooser).item(1)->setSelected(true);
    named<QLineEdit>(chooser, QStringLiteral("Search")).setText(QStringLiteral("ALP"));
    EXPECT_FALSE(listOf(chooser).item(0)->isHidden());
    EXPECT_TRUE(listOf(chooser).item(1)->isHidden());
    EXPECT_FALSE(named<QPushButton>(chooser, QStringLiteral("Choose")).isEnabled());
}

TEST_F(AppChooserTest, CancellingPicksNothing)
{
    ASSERT_TRUE(isShown(window));
    AppChooser& chooser = open();
    listOf(chooser).item(0)->setSelected(true);
    press(chooser, "Cancel");
    EXPECT_THAT(picked, IsEmpty());
    EXPECT_FALSE(chooser.isVisible());
}

} // namespace
} // namespace corvandi::testing
