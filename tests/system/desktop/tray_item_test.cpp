#include "exported_item.h"
#include "support/event_loop.h"
#include "tray_peer_process.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QPoint>

#include <gmock/gmock.h>

#include <csignal>
#include <utility>

namespace corvandi {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

const std::vector<std::string> inactiveMenu{
    "Hotkey inactive. Grant Accessibility to enable.",
    "[Open Accessibility Settings…]",
    "---",
    "Check for Updates…",
    "[Settings…] Control+,",
    "[Quit Corvandi] Control+Q",
};
const std::vector<std::string> activeMenu{
    "Hold ⌥Space to dictate",    "---", "Check for Updates…", "[Settings…] Control+,",
    "[Quit Corvandi] Control+Q",
};

/// The tray's process stands still until `goOn`, or while this object lives.
class HungTray {
public:
    HungTray()
        : process_(
              static_cast<pid_t>(QDBusConnection::sessionBus().interface()->servicePid(trayService).value()))
    {
        if (process_ == 0)
            throw std::runtime_error("no tray is running");
        kill(process_, SIGSTOP);
    }
    ~HungTray() { goOn(); }
    HungTray(const HungTray&) = delete;
    HungTray& operator=(const HungTray&) = delete;

    void goOn() { tell(SIGCONT); }
    void end() { tell(SIGKILL); }

private:
    /// Once: the number may soon be another process's.
    void tell(int signal)
    {
        if (const pid_t process = std::exchange(process_, 0))
            kill(process, signal);
    }

    pid_t process_;
};

/// A desktop with a panel whose tray shows items from the session bus.
class TrayItem : public ::testing::Test {
protected:
    /// The panel's tray is a process of its own.
    static inline const QString trayProgram = QStringLiteral("wrapper-2.0");

    static void endPanel() { desktop({QStringLiteral("end"), QStringLiteral("panel")}); }
    static void restartPanel() { desktop({QStringLiteral("restart"), QStringLiteral("panel")}); }

    static ExportedItem shownItem()
    {
        if (!waitUntil([] { return shownItems().size() == 1; }))
            throw std::runtime_error("the tray does not show the icon");
        return ExportedItem(shownItems().front());
    }
    /// Also shows that the items of former tests are gone.
    static bool isNothingShown()
    {
        return waitUntil([] { return shownItems().isEmpty(); });
    }
    /// Clicks on the icon until that opens a window of this program: a panel that has just started
    /// may not hear the first click.
    static bool clickOpens(const QString& button, const QString& program)
    {
        const auto before = openWindows(program).size();
        return waitUntil([&] {
            click(icon, button);
            return waitUntil([&] { return openWindows(program).size() > before; },
                             std::chrono::milliseconds(1000));
        });
    }
    static void press(const QStringList& keys)
    {
        run(QStringLiteral("xdotool"), QStringList{QStringLiteral("key")} + keys);
    }
    /// A point in the middle of a window's width, at this part of its height.
    static QPoint pointIn(const QString& window, double height)
    {
        const QString text = run(QStringLiteral("xdotool"),
                                 {QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), window});
        const auto number = [&text](const char* name) {
            const QString value = text.section(QLatin1String(name) + QLatin1Char('='), 1);
            return value.section(QLatin1Char('\n'), 0, 0).toInt();
        };
        return {number("\nX") + number("WIDTH") / 2,
                number("\nY") + static_cast<int>(number("HEIGHT") * height)};
    }
    static void click(const QPoint& point, const QString& button)
    {
        run(QStringLiteral("xdotool"), {QStringLiteral("mousemove"), QString::number(point.x()),
                                        QString::number(point.y()), QStringLiteral("click"), button});
    }
    /// The tray's only icon stands at the panel's right end.
    static inline const QPoint icon{1268, 14};
};

TEST_F(TrayItem, IsShownUnderTheProgramsName)
{
    const TrayPeer peer;
    const ExportedItem item = shownItem();
    EXPECT_EQ(item.property(QStringLiteral("Title")), QStringLiteral("Corvandi"));
    EXPECT_EQ(item.property(QStringLiteral("Id")), QStringLiteral("Corvandi"));
    EXPECT_EQ(item.property(QStringLiteral("Status")), QStringLiteral("Active"));
    EXPECT_EQ(item.property(QStringLiteral("IconName")), QString());
    EXPECT_THAT(peer.output(), Not(HasSubstr("tray")));
    takeScreenshot(QStringLiteral("tray-item.png"));
}

TEST_F(TrayItem, GoesWithTheProgram)
{
    {
        const TrayPeer peer;
        (void)shownItem();
    }
    EXPECT_TRUE(isNothingShown());
}

TEST_F(TrayItem, HandsItsMenuToTheTray)
{
    const TrayPeer peer;
    EXPECT_EQ(shownItem().menu(), inactiveMenu);
}

TEST_F(TrayItem, AChosenItemRunsItsAction)
{
    TrayPeer peer;
    const ExportedItem item = shownItem();
    item.choose(QStringLiteral("Settings…"));
    EXPECT_TRUE(peer.hasSaid("chose settings"));
    item.choose(QStringLiteral("Open Accessibility Settings…"));
    EXPECT_TRUE(peer.hasSaid("chose accessibility"));
}

TEST_F(TrayItem, QuittingFromTheMenuEndsTheProgram)
{
    const TrayPeer peer;
    shownItem().choose(QStringLiteral("Quit Corvandi"));
    EXPECT_TRUE(waitUntil([&] { return !peer.isRunning(); }));
}

TEST_F(TrayItem, IsBuiltAnewWhenTheTrayIsAboutToShowIt)
{
    TrayPeer peer;
    const ExportedItem item = shownItem();
    peer.command('a');
    EXPECT_EQ(item.menu(), inactiveMenu);
    item.aboutToShowMenu();
    EXPECT_EQ(item.menu(), activeMenu);
    item.choose(QStringLiteral("Settings…"));
    EXPECT_TRUE(peer.hasSaid("chose settings"));
}

TEST_F(TrayItem, ATrayThatDoesNotAskGetsTheNewMenuWhenTheIconIsTold)
{
    TrayPeer peer;
    const ExportedItem item = shownItem();
    peer.command('A');
    EXPECT_EQ(item.menu(), activeMenu);
    peer.command('A');
    EXPECT_EQ(item.menu(), inactiveMenu);
    peer.command('U');
    EXPECT_EQ(item.menu().at(3), "[Check for Updates…]");
    item.choose(QStringLiteral("Check for Updates…"));
    EXPECT_TRUE(peer.hasSaid("chose updates"));
}

TEST_F(TrayItem, AMenuThatStaysAsItIsKeepsItsItemsSoThatAChoiceUnderWayCounts)
{
    TrayPeer peer;
    const ExportedItem item = shownItem();
    const QList<int> before = item.ids();
    item.aboutToShowMenu();
    EXPECT_EQ(item.ids(), before);
}

TEST_F(TrayItem, ALeftClickOpensTheMenu)
{
    TrayPeer peer;
    (void)shownItem();
    ASSERT_TRUE(clickOpens(QStringLiteral("1"), TrayPeer::name));
    takeScreenshot(QStringLiteral("tray-left-click.png"));
    press({QStringLiteral("Up"), QStringLiteral("Up"), QStringLiteral("Return")});
    EXPECT_TRUE(peer.hasSaid("chose settings"));
    EXPECT_TRUE(waitUntil([] { return openWindows(TrayPeer::name).isEmpty(); }));
}

TEST_F(TrayItem, ARightClickOpensTheMenuInThePanelsStyle)
{
    TrayPeer peer;
    (void)shownItem();
    // The panel opens a menu of its own as long as it has not read the item's.
    ASSERT_TRUE(waitUntil([&] {
        press({QStringLiteral("Escape")});
        peer.command(' ');
        return clickOpens(QStringLiteral("3"), trayProgram) &&
               peer.hasSaid("asked", std::chrono::milliseconds(500));
    }));
    EXPECT_TRUE(openWindows(TrayPeer::name).isEmpty());
    takeScreenshot(QStringLiteral("tray-right-click.png"));
    // The mouse, because the panel's menu does not always get the keyboard; and again, because it takes
    // no choice in the first half second that it is open.
    const QPoint settings = pointIn(openWindows(trayProgram).front(), 0.72);
    EXPECT_TRUE(waitUntil([&] {
        click(settings, QStringLiteral("1"));
        return peer.hasSaid("chose settings", std::chrono::milliseconds(600));
    }));
}

TEST_F(TrayItem, ComesBackWithAPanelThatRestarts)
{
    TrayPeer peer;
    (void)shownItem();
    endPanel();
    ASSERT_TRUE(isNothingShown());
    peer.command('A');
    restartPanel();
    const ExportedItem item = shownItem();
    EXPECT_EQ(item.menu(), activeMenu);
    item.choose(QStringLiteral("Settings…"));
    EXPECT_TRUE(peer.hasSaid("chose settings"));
}

TEST_F(TrayItem, AppearsWhenThePanelStartsLaterThanTheProgram)
{
    endPanel();
    TrayPeer peer;
    EXPECT_TRUE(peer.hasSaid("Corvandi: no system tray yet; waiting for one"));
    peer.command('A');
    restartPanel();
    EXPECT_TRUE(peer.hasSaid("Corvandi: system tray found"));
    EXPECT_EQ(shownItem().menu(), activeMenu);
}

TEST_F(TrayItem, ATrayThatHangsHoldsNothingUp)
{
    HungTray tray;
    TrayPeer peer;
    for (const char letter : {'A', 'U', 'A'})
        peer.command(letter);
    EXPECT_TRUE(peer.isRunning());
    tray.goOn();
    EXPECT_EQ(shownItem().menu().at(3), "[Check for Updates…]");
}

TEST_F(TrayItem, ATrayThatHangsLaterHoldsNothingUpEither)
{
    TrayPeer peer;
    const ExportedItem item = shownItem();
    const HungTray tray;
    for (const char letter : {'A', 'U', 'A'})
        peer.command(letter);
    EXPECT_EQ(item.menu().at(3), "[Check for Updates…]");
}

TEST_F(TrayItem, ATrayThatEndsWhileItHangsIsForgotten)
{
    HungTray tray;
    TrayPeer peer;
    tray.end();
    restartPanel();
    EXPECT_EQ(shownItem().menu(), inactiveMenu);
}

TEST_F(TrayItem, SurvivesTheEndOfTheBus)
{
    TrayPeer peer;
    (void)shownItem();
    desktop({QStringLiteral("end"), QStringLiteral("bus")});
    peer.command('A');
    EXPECT_TRUE(peer.isRunning());
}

} // namespace
} // namespace corvandi
