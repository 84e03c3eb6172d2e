#include "support/event_loop.h"
#include "system/desktop/tray_host_watch.h"
#include "tray_peer_process.h"
#include "window_tray.h"

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using namespace testing;
using ::testing::HasSubstr;
using ::testing::Not;

/// What the tray shows, 24 by 24 pixels.
QImage trayPicture()
{
    return QGuiApplication::primaryScreen()->grabWindow(0, 1200, 0, 24, 24).toImage();
}

bool isIconDrawn()
{
    const QImage picture = trayPicture();
    bool hasDark = false;
    bool hasLight = false;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            hasDark = hasDark || qGray(picture.pixel(x, y)) < 120;
            hasLight = hasLight || qGray(picture.pixel(x, y)) > 200;
        }
    }
    return hasDark && hasLight;
}

/// The icon's own window is one of the tray's.
bool isMenuOpen()
{
    return openWindows(TrayPeer::name).size() > 1;
}

bool isShownBy(const TestWindowTray& tray)
{
    return waitUntil([&] { return tray.icon() != XCB_WINDOW_NONE && isIconDrawn(); });
}

/// A desktop without session bus, where only trays of the older kind can be.
TEST(TrayWindow, IsShownByATrayThatIsThereAlready)
{
    const TestWindowTray tray;
    const TrayPeer peer;
    EXPECT_TRUE(isShownBy(tray));
    EXPECT_THAT(peer.output(), Not(HasSubstr("tray")));
    takeScreenshot(QStringLiteral("tray-window.png"));
}

TEST(TrayWindow, IsShownByATrayThatStartsLater)
{
    TrayPeer peer;
    ASSERT_TRUE(peer.hasSaid("Corvandi: no system tray yet; waiting for one"));
    const TestWindowTray tray;
    EXPECT_TRUE(isShownBy(tray));
    EXPECT_TRUE(peer.hasSaid("Corvandi: system tray found"));
}

TEST(TrayWindow, ComesBackWithATrayThatStartsAgain)
{
    std::optional<TestWindowTray> tray(std::in_place);
    const TrayPeer peer;
    ASSERT_TRUE(isShownBy(*tray));
    tray.reset();
    tray.emplace();
    EXPECT_TRUE(isShownBy(*tray));
    EXPECT_TRUE(peer.isRunning());
}

TEST(TrayWindow, GoesWithTheProgram)
{
    const TestWindowTray tray;
    {
        const TrayPeer peer;
        ASSERT_TRUE(isShownBy(tray));
    }
    EXPECT_TRUE(waitUntil([&] { return tray.icon() == XCB_WINDOW_NONE; }));
}

TEST(TrayWindow, BothButtonsOpenTheMenuAsItIsNow)
{
    const TestWindowTray tray;
    TrayPeer peer;
    ASSERT_TRUE(isShownBy(tray));
    for (const QString& button : {QStringLiteral("1"), QStringLiteral("3")}) {
        peer.command('a');
        run(QStringLiteral("xdotool"), {QStringLiteral("mousemove"), QStringLiteral("1212"),
                                        QStringLiteral("12"), QStringLiteral("click"), button});
        ASSERT_TRUE(waitUntil([] { return isMenuOpen(); }));
        takeScreenshot(QStringLiteral("tray-window-menu-%1.png").arg(button));
        run(QStringLiteral("xdotool"),
            {QStringLiteral("key"), QStringLiteral("Up"), QStringLiteral("Up"), QStringLiteral("Return")});
        EXPECT_TRUE(peer.hasSaid("chose settings"));
        ASSERT_TRUE(waitUntil([] { return !isMenuOpen(); }));
    }
}

TEST(TrayWindow, WithoutAnyTrayTheProgramRunsAndSaysSoOnce)
{
    TrayPeer peer;
    EXPECT_TRUE(peer.hasSaid("Corvandi: no system tray yet; waiting for one"));
    peer.command('A');
    runFor(TrayHostWatch::grace + std::chrono::milliseconds(200));
    EXPECT_THAT(peer.output(), Not(HasSubstr("tray")));
    EXPECT_TRUE(peer.isRunning());
}

} // namespace
} // namespace corvandi
