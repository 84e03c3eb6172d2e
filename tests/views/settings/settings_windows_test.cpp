#include "settings_fixture.h"

#include "session/x11/keys/test_keyboard.h"
#include "views/settings/managed_widget_windows.h"

#include <QApplication>
#include <QProcess>
#include <QScreen>

namespace corvandi::testing {
namespace {

const QString settingsTitle = QStringLiteral("Corvandi Settings");
const QString welcomeTitle = QStringLiteral("Welcome to Corvandi");

class ManagedWindowsTest : public SettingsFixture {
protected:
    [[nodiscard]] static QWidget& widgetOf(const QString& title)
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->windowTitle() == title)
                return *widget;
        }
        throw std::runtime_error("there is no window " + title.toStdString());
    }
    [[nodiscard]] std::unique_ptr<ManagedWindow> makeSettingsWindow()
    {
        return windows.makeSettingsWindow([this] {
            ++closings;
            wasVisibleWhenClosing = widgetOf(settingsTitle).isVisible();
        });
    }
    [[nodiscard]] std::unique_ptr<ManagedWindow> makeWelcomeWindow()
    {
        return windows.makeWelcomeWindow([this] { ++completions; }, [this] { ++closings; });
    }
    static void present(ManagedWindow& window)
    {
        window.center();
        window.activate();
    }
    [[nodiscard]] static bool isInTheMiddle(const QWidget& window)
    {
        const QPoint off =
            window.geometry().center() - QGuiApplication::primaryScreen()->availableGeometry().center();
        // Without its frame, whose edges are not known before it is first shown.
        return std::abs(off.x()) <= 40 && std::abs(off.y()) <= 40;
    }

    int closings = 0;
    int completions = 0;
    bool wasVisibleWhenClosing = false;
    ManagedWidgetWindows windows{ManagedWidgetWindows::Contents{
        .settings = [this] { return makeSettings(); },
        .welcome =
            [this](const ManagedWindows::Callback& getStarted) {
                return std::make_unique<WelcomeView>(
                    std::make_unique<Welcome>(parts.permissions, parts.queue, getStarted));
            },
    }};
};

TEST_F(ManagedWindowsTest, TheSettingsWindowOpensInTheMiddleWithTheKeyboard)
{
    const auto window = makeSettingsWindow();
    EXPECT_FALSE(window->isVisible());
    present(*window);
    QWidget& widget = widgetOf(settingsTitle);
    ASSERT_TRUE(waitUntil([&] { return widget.isActiveWindow(); }));
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(widget.size(), QSize(660, 460));
    EXPECT_TRUE(isInTheMiddle(widget));
    EXPECT_FALSE(widget.windowIcon().isNull());
}

TEST_F(ManagedWindowsTest, TheSettingsWindowGrowsButNeverShrinks)
{
    const auto window = makeSettingsWindow();
    present(*window);
    QWidget& widget = widgetOf(settingsTitle);
    EXPECT_EQ(widget.layout()->totalMinimumSize(), QSize(660, 460));
    widget.resize(900, 600);
    EXPECT_EQ(widget.size(), QSize(900, 600));
    widget.resize(10, 10);
    EXPECT_EQ(widget.size(), QSize(660, 460));
}

TEST_F(ManagedWindowsTest, ClosingTellsBeforeAndHides)
{
    const auto window = makeSettingsWindow();
    present(*window);
    window->close();
    EXPECT_EQ(closings, 1);
    EXPECT_TRUE(wasVisibleWhenClosing);
    EXPECT_FALSE(window->isVisible());
    window->close();
    EXPECT_EQ(closings, 1) << "it is closed already";
}

TEST_F(ManagedWindowsTest, TheCloseButtonClosesLikewise)
{
    const auto window = makeSettingsWindow();
    present(*window);
    widgetOf(settingsTitle).close();
    EXPECT_EQ(closings, 1);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(ManagedWindowsTest, AClosedWindowOpensAgainInTheMiddle)
{
    const auto window = makeSettingsWindow();
    present(*window);
    QWidget& widget = widgetOf(settingsTitle);
    ASSERT_TRUE(waitUntil([&] { return widget.isActiveWindow(); }));
    widget.move(10, 10);
    window->close();
    // A window that is mapped again before the window manager has seen it go confuses some of them.
    ASSERT_TRUE(waitUntil([] { return !QApplication::activeWindow(); }));
    present(*window);
    EXPECT_TRUE(waitUntil([&] { return widget.isActiveWindow() && isInTheMiddle(widget); }));
}

TEST_F(ManagedWindowsTest, EscapeDoesNotCloseTheSettings)
{
    const auto window = makeSettingsWindow();
    present(*window);
    QWidget& widget = widgetOf(settingsTitle);
    ASSERT_TRUE(waitUntil([&] { return widget.isActiveWindow(); }));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_TRUE(window->isVisible());
}

TEST_F(ManagedWindowsTest, TheWelcomeWindowHasTheSizeOfItsContentAndKeepsIt)
{
    parts.accessibility.trusted = false;
    const auto window = makeWelcomeWindow();
    present(*window);
    QWidget& widget = widgetOf(welcomeTitle);
    ASSERT_TRUE(waitUntil([&] { return widget.isActiveWindow(); }));
    EXPECT_EQ(widget.width(), 420);
    EXPECT_EQ(widget.minimumSize(), widget.maximumSize());
    EXPECT_FALSE(widget.windowFlags() & (Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint));
    EXPECT_TRUE(widget.windowFlags() & Qt::WindowCloseButtonHint);
    EXPECT_TRUE(isInTheMiddle(widget));
    const QSize size = widget.size();
    parts.accessibility.trusted = true;
    parts.permissions.refresh();
    runFor(std::chrono::milliseconds(50));
    EXPECT_EQ(widget.size(), size) << "a grant moves nothing";
}

TEST_F(ManagedWindowsTest, TheWelcomeIsCompletedByItsButtonNotByClosing)
{
    const auto window = makeWelcomeWindow();
    present(*window);
    QTest::mouseClick(&named<QPushButton>(widgetOf(welcomeTitle), QStringLiteral("Get Started")),
                      Qt::LeftButton);
    EXPECT_EQ(completions, 1);
    window->close();
    EXPECT_EQ(completions, 1);
    EXPECT_EQ(closings, 1);
}

TEST_F(ManagedWindowsTest, AWindowThatGoesSaysNothing)
{
    auto window = makeSettingsWindow();
    present(*window);
    window.reset();
    EXPECT_EQ(closings, 0);
}

TEST_F(ManagedWindowsTest, ItComesToTheFrontWhileTheUserTypesInAnotherProgram)
{
    const auto window = makeSettingsWindow();
    QProcess terminal;
    terminal.start(QStringLiteral("xterm"), {QStringLiteral("-T"), QStringLiteral("terminal"),
                                             QStringLiteral("-e"), QStringLiteral("cat")});
    ASSERT_TRUE(terminal.waitForStarted());
    TestKeyboard keyboard(TestKeyboard::Kind::hardware);
    for (int round = 0; round < 3; ++round) {
        const auto isTerminalInFront = [] {
            QProcess query;
            query.start(QStringLiteral("xdotool"),
                        {QStringLiteral("getactivewindow"), QStringLiteral("getwindowname")});
            query.waitForFinished();
            return query.readAllStandardOutput().trimmed() == "terminal";
        };
        ASSERT_TRUE(waitUntil(isTerminalInFront));
        for (int key = 0; key < 5; ++key)
            keyboard.strike(key::a);
        present(*window);
        QWidget& widget = widgetOf(settingsTitle);
        EXPECT_TRUE(waitUntil([&] { return widget.isActiveWindow(); })) << "round " << round;
        if (round == 0)
            window->close(); // Later rounds leave it open, behind the terminal.
        QProcess raise;
        raise.start(QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--class"),
                                                QStringLiteral("xterm"), QStringLiteral("windowactivate")});
        ASSERT_TRUE(waitUntil([&] { return raise.state() == QProcess::NotRunning; }));
    }
    terminal.kill();
    terminal.waitForFinished();
}

} // namespace
} // namespace corvandi::testing
