#include "settings_fixture.h"

#include "support/fake_application_directory.h"
#include "support/fake_session.h"
#include "views/settings/app_chooser.h"

#include <QImage>
#include <QTemporaryDir>

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

TEST_F(AppChooserTest, TypingNarrowsTheListDownToWhatCanBePicked)
{
    ASSERT_TRUE(isShown(window));
    AppChooser& chooser = open();
    listOf(chooser).item(1)->setSelected(true);
    auto& search = named<QLineEdit>(chooser, QStringLiteral("Search"));
    search.setText(QStringLiteral("ALP"));
    EXPECT_FALSE(listOf(chooser).item(0)->isHidden());
    EXPECT_TRUE(listOf(chooser).item(1)->isHidden());
    EXPECT_FALSE(listOf(chooser).item(1)->isSelected());
    QTest::keyClick(&search, Qt::Key_Return);
    EXPECT_THAT(picked, ElementsAre(QStringLiteral("a"))) << "the first match";
}

TEST_F(AppChooserTest, WithoutAMatchThereIsNothingToPick)
{
    ASSERT_TRUE(isShown(window));
    AppChooser& chooser = open();
    auto& search = named<QLineEdit>(chooser, QStringLiteral("Search"));
    search.setText(QStringLiteral("x"));
    EXPECT_TRUE(waitUntil([&] { return shows(chooser, QStringLiteral("No Matches")); }));
    EXPECT_FALSE(named<QPushButton>(chooser, QStringLiteral("Choose")).isEnabled());
    QTest::keyClick(&search, Qt::Key_Return);
    EXPECT_THAT(picked, IsEmpty());
    search.clear();
    EXPECT_FALSE(shows(chooser, QStringLiteral("No Matches")));
}

TEST_F(AppChooserTest, TheArrowKeysMoveInTheListWhileOneTypes)
{
    ASSERT_TRUE(isShown(window));
    AppChooser& chooser = open();
    ASSERT_TRUE(waitUntil([&] { return chooser.isActiveWindow(); }));
    auto& search = named<QLineEdit>(chooser, QStringLiteral("Search"));
    EXPECT_TRUE(search.hasFocus());
    QTest::keyClick(&search, Qt::Key_Down);
    EXPECT_TRUE(listOf(chooser).item(0)->isSelected());
    QTest::keyClick(&search, Qt::Key_Down);
    EXPECT_TRUE(listOf(chooser).item(1)->isSelected());
    QTest::keyClick(&search, Qt::Key_Up);
    EXPECT_TRUE(listOf(chooser).item(0)->isSelected());
    EXPECT_TRUE(search.hasFocus());
    QTest::keyClick(&search, Qt::Key_Return);
    EXPECT_THAT(picked, ElementsAre(QStringLiteral("a")));
}

TEST_F(AppChooserTest, IconsAreLoadedForTheRowsThatAreSeen)
{
    QImage red(48, 48, QImage::Format_RGB32);
    red.fill(Qt::red);
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("red.png"));
    ASSERT_TRUE(red.save(file));
    for (int i = 0; i < 500; ++i) {
        const QString id = QStringLiteral("app%1").arg(i, 3, 10, QLatin1Char('0'));
        applications.installed.push_back({id, id, file});
        applications.icons[id] = file;
    }
    ASSERT_TRUE(isShown(window));
    AppChooser& chooser = open();
    const auto isRed = [&] {
        const QListWidget& list = listOf(chooser);
        const QRect row = list.visualItemRect(list.item(2));
        const QPixmap picture = list.viewport()->grab(row);
        return picture.toImage().pixelColor(picture.width() * 24 / row.width(), picture.height() / 2) ==
               QColor(Qt::red);
    };
    EXPECT_TRUE(waitUntil(isRed));
    EXPECT_LT(applications.iconsAsked, 40);
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
