#include "views/appearance/appearance_follower.h"

#include "support/event_loop.h"
#include "support/fake_appearance.h"

#include <QApplication>
#include <QWidget>

#include <gtest/gtest.h>

namespace corvandi {
namespace {

using testing::waitUntil;

class AppearanceFollowerTest : public ::testing::Test {
protected:
    ~AppearanceFollowerTest() override { QApplication::setPalette(QPalette()); }

    const QPalette theme = QApplication::palette();
    testing::FakeAppearance desktop;
};

TEST_F(AppearanceFollowerTest, WithoutAPreferenceTheThemeDecides)
{
    const AppearanceFollower follower(desktop);
    EXPECT_EQ(QApplication::palette(), theme);
}

TEST_F(AppearanceFollowerTest, ADarkDesktopMakesAllWindowsDark)
{
    ASSERT_FALSE(isDark(theme)) << "the virtual desktop has no dark theme";
    desktop.set(ColorScheme::dark);
    const AppearanceFollower follower(desktop);
    EXPECT_TRUE(isDark(QApplication::palette()));
    EXPECT_TRUE(isDark(QWidget().palette()));
}

TEST_F(AppearanceFollowerTest, FollowsEveryChangeAndReturnsToTheTheme)
{
    const AppearanceFollower follower(desktop);
    const QWidget window;
    for (int round = 0; round < 2; ++round) {
        desktop.set(ColorScheme::dark);
        EXPECT_TRUE(waitUntil([&] { return isDark(window.palette()); }));
        desktop.set(ColorScheme::light);
        EXPECT_TRUE(waitUntil([&] { return window.palette() == theme; }));
        desktop.set(ColorScheme::dark);
        EXPECT_TRUE(waitUntil([&] { return isDark(window.palette()); }));
        desktop.set(ColorScheme::noPreference);
        EXPECT_TRUE(waitUntil([&] { return window.palette() == theme; }));
    }
}

TEST_F(AppearanceFollowerTest, NoLongerFollowsOnceItIsGone)
{
    {
        const AppearanceFollower follower(desktop);
        EXPECT_EQ(desktop.registrations(), 1U);
    }
    EXPECT_EQ(desktop.registrations(), 0U);
}

} // namespace
} // namespace corvandi
