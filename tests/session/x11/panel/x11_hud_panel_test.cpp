#include "core/hud/hud_controller.h"
#include "panel_desktop.h"
#include "session/x11/panel/x11_hud_panel.h"
#include "system/process/qt_main_queue.h"
#include "views/hud/hud_view.h"

#include <QAbstractEventDispatcher>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>

namespace corvandi {
namespace {

TEST(Compositor, IsRunningOrNotAsTheDesktopHasOne)
{
    EXPECT_EQ(isCompositorRunning(), testing::hasCompositor());
}

using namespace std::chrono_literals;
using testing::run;
using testing::runFor;
using testing::screenColorAt;
using testing::Underlay;
using testing::waitUntil;

class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget& watched) { watched.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int count = 0;
};

class X11HUDPanelTest : public ::testing::Test {
protected:
    X11HUDPanelTest()
    {
        view.setPalette(QPalette(Qt::white));
        model.setState(HUDState::recording);
    }
    void present()
    {
        const auto screen = panel.mainScreenVisibleFrame();
        ASSERT_TRUE(screen);
        frame = {screen->x + screen->width / 2 - 150, screen->y + screen->height - 154, 300, 64};
        panel.setFrame(frame);
        panel.setAlpha(0);
        panel.orderFront();
        panel.fadeTo(1, 140ms);
        // What is on the screen before the fade is over may be a picture of the time before it.
        EXPECT_TRUE(waitUntil([this] { return view.windowOpacity() == 1; }));
        EXPECT_TRUE(waitUntil([this] { return isOnTop(); })) << "the panel does not show";
    }
    /// A place on the screen, given from the pill's top left.
    [[nodiscard]] QPoint inPill(const QPoint& offset)
    {
        return view.pos() + view.pill().topLeft().toPoint() + offset;
    }
    /// Whether the pill's light glass is what one sees where it should be.
    [[nodiscard]] bool isOnTop() { return screenColorAt(inPill({8, 23})).lightness() > 220; }
    [[nodiscard]] bool isGone() { return screenColorAt(inPill({8, 23})) == Underlay::color; }
    /// What the X server says about the panel's window.
    [[nodiscard]] QString serverInfo(const QString& option)
    {
        return run(QStringLiteral("xwininfo -id %1 %2").arg(view.winId()).arg(option));
    }
    void keepScreenshot(const QString& name)
    {
        const QString desktop = QStringLiteral("%1_%2").arg(qEnvironmentVariable("TEST_WINDOW_MANAGER"),
                                                            qEnvironmentVariable("TEST_COMPOSITOR"));
        const QImage around = testing::screenshot(view.geometry().adjusted(-20, -20, 20, 20));
        EXPECT_TRUE(around.save(QStringLiteral(SCREENSHOTS "/panel_%1_%2.png").arg(name, desktop)));
    }

    HUDModel model;
    Underlay underlay;
    std::unique_ptr<HUDView> content{std::make_unique<HUDView>(model)};
    HUDView& view{*content};
    X11HUDPanel panel{std::move(content)};
    PaintCounter paints{view};
    PanelRect frame{};
};

TEST_F(X11HUDPanelTest, ShowsItsFaces)
{
    present();
    model.setBars({0.1, 0.4, 0.8, 1.0, 0.6, 0.3, 0.2, 0.5, 0.7, 0.9, 0.5, 0.3, 0.1, 0.06,
                   0.1, 0.4, 0.8, 1.0, 0.6, 0.3, 0.2, 0.5, 0.7, 0.9, 0.5, 0.3, 0.1, 0.06});
    runFor(250ms);
    EXPECT_TRUE(isOnTop());
    keepScreenshot(QStringLiteral("recording"));
    model.setState(HUDState::notice);
    model.setStatusText(QStringLiteral("Copied to the clipboard"));
    runFor(600ms);
    EXPECT_EQ(screenColorAt(inPill({16, 15})).hue(), QColor(36, 160, 66).hue());
    keepScreenshot(QStringLiteral("notice"));
}

TEST_F(X11HUDPanelTest, StandsWhereItIsToldWithRoomForItsShadow)
{
    present();
    const QString info = serverInfo(QStringLiteral("-stats"));
    const int margin = HUDContent::shadowMargin;
    EXPECT_TRUE(info.contains(QStringLiteral("Absolute upper-left X:  %1\n").arg(int(frame.x) - margin)));
    EXPECT_TRUE(info.contains(QStringLiteral("Absolute upper-left Y:  %1\n").arg(int(frame.y) - margin)));
    EXPECT_TRUE(info.contains(QStringLiteral("Width: %1\n").arg(300 + 2 * margin)));
    EXPECT_TRUE(info.contains(QStringLiteral("Height: %1\n").arg(64 + 2 * margin)));
}

TEST_F(X11HUDPanelTest, AMessageThatIsTooLongForThePanelWidensItAroundItsMiddle)
{
    present();
    const QRect normal = view.geometry();
    model.setState(HUDState::error);
    model.setStatusText(QStringLiteral(
        "Die Transkription ist unvollständig. Der vorhandene Teil des Textes wurde in die Zwischenablage "
        "kopiert; einfügen mit ⌘V."));
    EXPECT_TRUE(waitUntil([this] { return view.pill().width() == view.neededWidth(); }));
    const QRect wide = view.geometry();
    EXPECT_EQ(wide.width(), view.neededWidth() + 2 * HUDContent::shadowMargin);
    EXPECT_GT(wide.width(), normal.width());
    EXPECT_LE(std::abs(wide.center().x() - normal.center().x()), 1);
    EXPECT_EQ(wide.top(), normal.top());
    EXPECT_EQ(wide.height(), normal.height());
    runFor(300ms);
    EXPECT_TRUE(isOnTop());
    keepScreenshot(QStringLiteral("long"));
    model.setState(HUDState::recording);
    EXPECT_TRUE(waitUntil([&] { return view.geometry() == normal; }));
}

TEST_F(X11HUDPanelTest, ThePictureStaysInTheMiddleWhileTheWindowIsResized)
{
    present();
    EXPECT_TRUE(
        serverInfo(QStringLiteral("-stats")).contains(QStringLiteral("Bit Gravity State: CenterGravity")));
}

TEST_F(X11HUDPanelTest, NoMessageIsWiderThanTheScreen)
{
    model.setState(HUDState::error);
    model.setStatusText(QStringLiteral("one two three four five ").repeated(40));
    present();
    const auto screen = panel.mainScreenVisibleFrame();
    EXPECT_GE(view.geometry().left(), screen->x);
    EXPECT_LE(view.geometry().right(), screen->x + screen->width);
}

TEST_F(X11HUDPanelTest, FollowsAChangeOfTheThemeWhileItIsShown)
{
    present();
    view.setPalette(QPalette(QColor(40, 40, 44)));
    EXPECT_TRUE(waitUntil([this] { return screenColorAt(inPill({8, 23})).lightness() < 80; }));
    keepScreenshot(QStringLiteral("dark"));
}

TEST_F(X11HUDPanelTest, IsInNoTaskListAndLeftAloneByTheWindowManager)
{
    present();
    EXPECT_TRUE(
        serverInfo(QStringLiteral("-stats")).contains(QStringLiteral("Override Redirect State: yes")));
    if (!testing::hasWindowManager())
        return;
    const auto listed = [](QWidget& window) {
        return run(QStringLiteral("xprop -root _NET_CLIENT_LIST"))
            .contains(QStringLiteral("0x%1").arg(window.winId(), 0, 16));
    };
    EXPECT_TRUE(waitUntil([&] { return listed(underlay); }));
    EXPECT_FALSE(listed(view));
}

TEST_F(X11HUDPanelTest, StaysAboveAWindowThatTheWindowManagerRaises)
{
    if (!testing::hasWindowManager())
        GTEST_SKIP() << "nobody keeps windows in order without a window manager";
    present();
    underlay.raise();
    underlay.activateWindow();
    runFor(200ms);
    EXPECT_TRUE(isOnTop());
    underlay.showFullScreen();
    ASSERT_TRUE(waitUntil([] { return screenColorAt({5, 5}) == Underlay::color; }));
    runFor(200ms);
    EXPECT_TRUE(isOnTop());
}

TEST_F(X11HUDPanelTest, OrderingFrontAgainPutsItBackOnTop)
{
    present();
    run(QStringLiteral("xdotool windowraise %1").arg(underlay.winId()));
    runFor(100ms);
    present();
}

TEST_F(X11HUDPanelTest, IsOnEveryWorkspace)
{
    if (!testing::hasWindowManager())
        GTEST_SKIP() << "there are no workspaces without a window manager";
    run(QStringLiteral("wmctrl -n 2"));
    present();
    run(QStringLiteral("wmctrl -s 1"));
    EXPECT_TRUE(waitUntil([] { return screenColorAt({300, 500}) != Underlay::color; }));
    runFor(200ms);
    EXPECT_TRUE(isOnTop());
    run(QStringLiteral("wmctrl -s 0"));
    EXPECT_TRUE(waitUntil([] { return screenColorAt({300, 500}) == Underlay::color; }));
}

TEST_F(X11HUDPanelTest, TheWindowBeneathShowsAroundTheCapsule)
{
    present();
    runFor(300ms);
    EXPECT_EQ(screenColorAt(inPill({0, 0})).hue(), Underlay::color.hue());
    EXPECT_EQ(screenColorAt(inPill({-20, 23})).lightness(), Underlay::color.lightness());
    const int underPill = static_cast<int>(view.pill().height()) + 2;
    const QColor below = screenColorAt(inPill({100, underPill}));
    if (testing::hasCompositor())
        EXPECT_LT(below.lightness(), Underlay::color.lightness()) << "a shadow";
    else
        EXPECT_EQ(below, Underlay::color) << "no shadow";
}

TEST_F(X11HUDPanelTest, IsCutOutAlongTheCapsuleOnlyWithoutACompositor)
{
    present();
    EXPECT_EQ(view.mask().isEmpty(), testing::hasCompositor());
    if (testing::hasCompositor())
        return;
    EXPECT_EQ(view.mask(), view.pillRegion());
    model.setState(HUDState::error);
    const qreal before = view.mask().boundingRect().width();
    EXPECT_TRUE(waitUntil([this] { return view.pill().width() == 40; }));
    EXPECT_TRUE(waitUntil([this] { return view.mask() == view.pillRegion(); })) << "follows the capsule";
    EXPECT_LT(view.mask().boundingRect().width(), before);
    const QString size =
        QStringLiteral("Window shape extents:  %1x%2+").arg(view.pill().width()).arg(view.pill().height());
    EXPECT_TRUE(waitUntil([&] { return serverInfo(QStringLiteral("-shape")).contains(size); }));
}

TEST_F(X11HUDPanelTest, FadesInWithACompositorAndIsSimplyThereWithoutOne)
{
    panel.setFrame({490, 646, 300, 64});
    panel.setAlpha(0);
    panel.orderFront();
    panel.fadeTo(1, 140ms);
    EXPECT_EQ(view.windowOpacity(), testing::hasCompositor() ? 0 : 1);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(waitUntil([this] { return view.windowOpacity() == 1; }));
    if (testing::hasCompositor()) {
        EXPECT_GT(std::chrono::steady_clock::now() - start, 100ms);
        EXPECT_LT(std::chrono::steady_clock::now() - start, 2s);
    }
}

TEST_F(X11HUDPanelTest, NothingRunsWhileItIsOrderedOut)
{
    present();
    panel.orderOut();
    ASSERT_TRUE(waitUntil([this] { return isGone(); }));
    paints.count = 0;
    model.setBars(std::vector<double>(28, 1.0));
    model.setState(HUDState::processing);
    runFor(300ms);
    EXPECT_EQ(paints.count, 0);
    const auto* dispatcher = QAbstractEventDispatcher::instance();
    EXPECT_TRUE(dispatcher->registeredTimers(&view).isEmpty());
    for (QObject* child : view.children())
        EXPECT_TRUE(dispatcher->registeredTimers(child).isEmpty());
}

TEST_F(X11HUDPanelTest, FollowsAScreenOfAnotherSize)
{
    present();
    panel.orderOut();
    run(QStringLiteral("xrandr --newmode small 64 1024 1048 1184 1344 768 771 777 806"));
    run(QStringLiteral("xrandr --addmode screen small"));
    run(QStringLiteral("xrandr --output screen --mode small"));
    EXPECT_TRUE(waitUntil([this] { return panel.mainScreenVisibleFrame()->width == 1024; }));
    present();
    EXPECT_EQ(frame, (PanelRect{362, 614, 300, 64}));
    EXPECT_TRUE(isOnTop());
    run(QStringLiteral("xrandr --output screen --mode 1280x800"));
    EXPECT_TRUE(waitUntil([this] { return panel.mainScreenVisibleFrame()->width == 1280; }));
    present();
    EXPECT_EQ(frame, (PanelRect{490, 646, 300, 64}));
    EXPECT_TRUE(isOnTop());
}

/// Splits the screen into two monitors, of which the right one is the main one.
class TwoMonitors {
public:
    TwoMonitors()
    {
        run(QStringLiteral("xrandr --setmonitor left 640/160x800/200+0+0 screen"));
        run(QStringLiteral("xrandr --setmonitor *right 640/160x800/200+640+0 none"));
    }
    ~TwoMonitors()
    {
        run(QStringLiteral("xrandr --delmonitor right"));
        run(QStringLiteral("xrandr --delmonitor left"));
    }
    TwoMonitors(const TwoMonitors&) = delete;
    TwoMonitors& operator=(const TwoMonitors&) = delete;
};

TEST_F(X11HUDPanelTest, StandsOnTheMainOneOfSeveralScreens)
{
    {
        const TwoMonitors monitors;
        ASSERT_TRUE(waitUntil([this] { return panel.mainScreenVisibleFrame()->x == 640; }));
        present();
        EXPECT_EQ(frame, (PanelRect{810, 646, 300, 64}));
        EXPECT_TRUE(isOnTop());
        keepScreenshot(QStringLiteral("right_screen"));
        model.setState(HUDState::error);
        model.setStatusText(QStringLiteral("one two three four five ").repeated(40));
        EXPECT_GE(view.geometry().left(), 640);
        panel.orderOut();
        model.setState(HUDState::recording);
    }
    EXPECT_TRUE(waitUntil([this] { return panel.mainScreenVisibleFrame()->width == 1280; }));
    present();
    EXPECT_EQ(frame, (PanelRect{490, 646, 300, 64}));
}

TEST_F(X11HUDPanelTest, ACompositorMayComeAndGo)
{
    if (!testing::hasCompositor())
        GTEST_SKIP() << "this desktop has none";
    present();
    EXPECT_TRUE(view.mask().isEmpty());
    run(QStringLiteral(DESKTOP_COMMAND), {QStringLiteral("end"), QStringLiteral("compositor")});
    ASSERT_TRUE(waitUntil([] { return !isCompositorRunning(); }));
    present();
    EXPECT_EQ(view.mask(), view.pillRegion());
    EXPECT_TRUE(isOnTop());
    run(QStringLiteral(DESKTOP_COMMAND), {QStringLiteral("restart"), QStringLiteral("compositor")});
    ASSERT_TRUE(waitUntil([] { return isCompositorRunning(); }));
    present();
    EXPECT_TRUE(view.mask().isEmpty());
}

TEST_F(X11HUDPanelTest, ServesTheController)
{
    QtMainQueue queue;
    X11HUDPanelFactory panels([](HUDModel& shown) { return std::make_unique<HUDView>(shown); });
    HUDController hud(queue, panels);
    hud.showRecording();
    const auto isVisible = [] { return screenColorAt({640, 678}) != Underlay::color; };
    hud.showRecording();
    EXPECT_TRUE(waitUntil(isVisible));
    hud.showTransient(QStringLiteral("Copied to the clipboard"), HUDState::notice);
    const auto start = std::chrono::steady_clock::now();
    // It fades in anew; it is gone for good when the time is over.
    EXPECT_TRUE(waitUntil([&] { return std::chrono::steady_clock::now() - start > 500ms; }));
    EXPECT_TRUE(isVisible());
    EXPECT_TRUE(waitUntil([&] { return !isVisible(); }));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 1800ms);
}

} // namespace
} // namespace corvandi
