// A new user: the welcome, its permissions, and what they lead to.

#include "good_enough.h"
#include "shell_session.h"

#include "harness/tray_menu.h"

#include <fstream>
#include <thread>

namespace corvandi::testing {
namespace {

using namespace harness;
using namespace std::chrono_literals;
using Kind = TargetApplication::Kind;
using State = Accessible::State;

const char* const grantAccessibility = "Grant Accessibility";
const char* const inactiveStatus = "Hotkey inactive. Grant Accessibility to enable.";
const char* const openSettingsLine = "[Open Accessibility Settings…]";

/// Holds the hotkey as long as a dictation would need to show its panel and to hear something.
void expectNoHotkey(ShellSession& session)
{
    const size_t mark = session.program().mark();
    session.pressHotkey();
    std::this_thread::sleep_for(500ms);
    session.releaseHotkey();
    // The window manager has taken the keys for a menu of its own.
    session.keyboard().strike(Key::escape);
    EXPECT_EQ(session.program().mark(), mark) << session.program().log().substr(mark);
}

/// A file of the model that the process has opened.
bool hasSpeechModel(pid_t process)
{
    std::ifstream maps("/proc/" + std::to_string(process) + "/maps");
    const std::string all{std::istreambuf_iterator<char>(maps), {}};
    return all.find("en-us") != std::string::npos;
}

void expectDictation(Session& session, const TargetApplication& target)
{
    const Recording recording = recordings::goForward();
    EXPECT_TRUE(saysWhatWasSaid(session.dictate(recording, target), recording.reference));
}

TEST(TheFirstRun, ShowsTheWelcomeAloneAndLeadsToTheSettingsAndADictation)
{
    ShellSession session;
    session.forgetPreferences();
    const TargetApplication target(Kind::qtField, session.folder());
    const pid_t program = session.startProgram().process().id();
    session.elements().waitFor({"frame", ShellSession::welcomeTitle});
    EXPECT_EQ(session.elements().children().size(), 1U) << "more than the welcome is there";
    target.activate();
    expectNoHotkey(session);
    EXPECT_FALSE(hasSpeechModel(program));
    EXPECT_EQ(session.preference("didCompleteWelcome"), "");
    session.keepScreenshot("welcome");

    session.raise(ShellSession::welcomeTitle);
    session.click({"push button", "Get Started"});
    session.elements().waitFor({"layered pane", "General"});
    EXPECT_TRUE(session.windows().waitUntilClosed(ShellSession::welcomeTitle));
    EXPECT_TRUE(session.waitForPreference("didCompleteWelcome=true"));
    EXPECT_EQ(session.windows().activeTitle(), ShellSession::settingsTitle);

    target.activate();
    expectDictation(session, target);
    EXPECT_TRUE(hasSpeechModel(program));
}

TEST(AWelcomeThatIsClosed, LeavesNoHotkeyAndComesBackWithTheNextLaunchOrStart)
{
    ShellSession session;
    session.forgetPreferences();
    session.startProgram();
    ASSERT_TRUE(session.windows().waitUntilOpen(ShellSession::welcomeTitle));
    session.closeWindow(ShellSession::welcomeTitle);
    expectNoHotkey(session);
    EXPECT_TRUE(session.program().process().isRunning());

    session.launchAgain();
    session.elements().waitFor({"frame", ShellSession::welcomeTitle});
    EXPECT_FALSE(session.windows().isOpen(ShellSession::settingsTitle));
    session.closeWindow(ShellSession::welcomeTitle);
    session.stopProgram();
    EXPECT_EQ(session.preference("didCompleteWelcome"), "");

    session.startProgram();
    EXPECT_TRUE(session.windows().waitUntilOpen(ShellSession::welcomeTitle));
}

/// A desktop on which nobody has turned on the support yet. The toolkit shows the program to the test all
/// the same.
class WithoutAccessibilitySupport : public ::testing::Test {
protected:
    explicit WithoutAccessibilitySupport(const Session::Options& options = {"a11y=off"})
        : session(options)
    {
    }

    void startProgram() { session.startProgram({"env", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1"}); }
    void showWelcome()
    {
        session.forgetPreferences();
        startProgram();
        session.elements().waitFor({"push button", grantAccessibility});
    }
    [[nodiscard]] bool isSupportOn() const { return bus->property(status, isEnabled).toBool(); }

    ShellSession session;
    const std::shared_ptr<BusConnection> bus = BusConnection::toSession();
    const BusConnection::Target status{QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                                       QStringLiteral("org.a11y.Status")};
    const QString isEnabled = QStringLiteral("IsEnabled");
};

TEST_F(WithoutAccessibilitySupport, TheWelcomeAsksToTurnItOnAndSeesThatAtOnce)
{
    showWelcome();
    const Accessible welcome = session.elements().waitFor({"frame", ShellSession::welcomeTitle});
    EXPECT_TRUE(welcome.find({"push button", "Continue"}));
    EXPECT_FALSE(welcome.find({"push button", "Grant Microphone"}));
    session.click({"push button", grantAccessibility});
    session.elements()
        .waitFor({"dialog", ShellSession::turnOnQuestion})
        .waitFor({"label", ShellSession::turnOnQuestion});
    session.keepScreenshot("question");
    session.click({"push button", "Not Now"});
    EXPECT_TRUE(session.elements().waitUntilGone({"label", ShellSession::turnOnQuestion}));
    // Longer than the welcome waits between two looks.
    std::this_thread::sleep_for(1500ms);
    EXPECT_TRUE(welcome.find({"push button", "Continue"}));
    EXPECT_FALSE(isSupportOn());

    session.click({"push button", grantAccessibility});
    session.click({"push button", "Turn On"});
    const auto granted = Clock::now();
    welcome.waitFor({"push button", "Get Started"});
    EXPECT_LT(Clock::now() - granted, 2s);
    EXPECT_TRUE(welcome.waitUntilGone({"push button", grantAccessibility}));
    EXPECT_TRUE(isSupportOn());
    session.keepScreenshot("granted");
}

class WithoutAccessibilitySupportButATray : public WithoutAccessibilitySupport {
protected:
    WithoutAccessibilitySupportButATray()
        : WithoutAccessibilitySupport({"a11y=off", "tray=xfce4-panel"})
    {
    }
};

TEST_F(WithoutAccessibilitySupportButATray, TheHotkeyComesByItselfWhenItIsTurnedOnLater)
{
    showWelcome();
    const TargetApplication target(Kind::terminal, session.folder());
    const TrayMenu menu(session.program().process().id());
    session.raise(ShellSession::welcomeTitle);
    session.click({"push button", "Continue"});
    session.program().waitForLine("global hotkey not active yet; waiting for Accessibility permission");
    EXPECT_TRUE(session.windows().waitUntilOpen(ShellSession::settingsTitle));
    EXPECT_TRUE(session.waitForPreference("didCompleteWelcome=true"));
    EXPECT_EQ(menu.lines().at(0), inactiveStatus);
    EXPECT_EQ(menu.lines().at(1), openSettingsLine);
    target.activate();
    expectNoHotkey(session);

    bus->setProperty(status, isEnabled, true);
    session.program().waitForLine("global hotkey activated");
    EXPECT_TRUE(menu.waitForStatus("Hold ⌥Space to dictate"));
    EXPECT_EQ(menu.lines().at(1), "---");
    expectDictation(session, target);
}

} // namespace
} // namespace corvandi::testing
