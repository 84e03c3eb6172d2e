// Keeps pictures of every page and window of the running program, in each look and scale, to be looked at;
// and tests of them what a program can see.

#include "data_folder.h"
#include "shell_session.h"

#include "harness/picture.h"

#include <gtest/gtest.h>

#include <thread>
#include <tuple>

namespace corvandi::testing {
namespace {

using namespace harness;
using namespace std::chrono_literals;

enum class Look { light, dark };

/// A desktop that says, by its portal, that windows are to be dark.
class DarkDesktop {
public:
    DarkDesktop()
        : portal_({"/usr/bin/python3", CORVANDI_DARK_PORTAL})
    {
        // Nothing is asked of it before: the bus would start the real one in its place.
        const auto bus = BusConnection::toSession();
        const BusConnection::Target owners{QStringLiteral("org.freedesktop.DBus"),
                                           QStringLiteral("/org/freedesktop/DBus"),
                                           QStringLiteral("org.freedesktop.DBus")};
        const QVariantList name{QStringLiteral("org.freedesktop.portal.Desktop")};
        const QString question = QStringLiteral("NameHasOwner");
        if (!waitUntil([&] { return bus->call(owners, question, name).value(0).toBool(); }))
            throw HarnessError("the portal does not start");
    }

private:
    ChildProcess portal_;
};

class EveryWindow : public ::testing::TestWithParam<std::tuple<Look, int>> {
protected:
    [[nodiscard]] static Look look() { return std::get<0>(GetParam()); }
    [[nodiscard]] static int scale() { return std::get<1>(GetParam()); }
    [[nodiscard]] static Session::Options options()
    {
        return {"a11y=off", scale() == 1 ? "size=1280x800x24" : "size=2560x1600x24"};
    }

    void startProgram()
    {
        if (look() == Look::dark)
            portal.emplace();
        session.startProgram(
            {"env", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1", "QT_SCALE_FACTOR=" + std::to_string(scale())});
    }

    /// Waits for a window and keeps a picture of it.
    void keep(const Accessible& window, const std::string& title, const std::string& name)
    {
        SCOPED_TRACE(name);
        ASSERT_TRUE(session.windows().waitUntilActive(title));
        expectTheLook();
        expectNothingStandsOut(window);
        // Switches glide for a moment, and so do the messages of the window manager.
        std::this_thread::sleep_for(300ms);
        session.keepScreenshot(name);
    }

    void expectTheLook() const
    {
        const auto isDark = [this] {
            const auto pixels = Picture().pixels(session.windows().activeArea().value_or(Area()));
            uint64_t sum = 0;
            for (const uint32_t pixel : pixels)
                sum += pixel >> 8 & 0xffU;
            return sum < pixels.size() * 128;
        };
        EXPECT_TRUE(waitUntil([&] { return isDark() == (look() == Look::dark); }));
    }

    /// Nothing is cut off at the sides, where no page scrolls.
    static void expectNothingStandsOut(const Accessible& window)
    {
        const Area outside = window.area();
        window.walk([&](const Accessible& element) {
            const Area area = element.area();
            EXPECT_GE(area.x, outside.x) << element.role() << ' ' << element.name();
            EXPECT_LE(area.x + area.width, outside.x + outside.width)
                << element.role() << ' ' << element.name();
        });
    }

    ShellSession session{options()};
    std::optional<DarkDesktop> portal;
};

std::string nameOf(const ::testing::TestParamInfo<std::tuple<Look, int>>& info)
{
    const std::string look = std::get<0>(info.param) == Look::dark ? "Dark" : "Light";
    return look + (std::get<1>(info.param) == 1 ? "" : "AtDoubleScale");
}

INSTANTIATE_TEST_SUITE_P(Looks, EveryWindow,
                         ::testing::Combine(::testing::Values(Look::light, Look::dark),
                                            ::testing::Values(1, 2)),
                         nameOf);

const char* const longText =
    "It was said in one breath, and so it is a text that needs more than one line of "
    "the page on which it stands, however wide that is.";

TEST_P(EveryWindow, LooksAsTheDesktopDoesAndStandsWhole)
{
    data_folder::write("vocab.json",
                       R"({"global":[{"id":"6BA7B810-9DAD-11D1-80B4-00C04FD430C8","from":"corvandy",)"
                       R"("to":"Corvandi"}],"apps":[{"bundleID":"xterm","name":"A Terminal","rules":[]}]})");
    data_folder::write("history.json",
                       R"([{"id":"6BA7B811-9DAD-11D1-80B4-00C04FD430C8","text":")" + std::string(longText) +
                           R"(","date":800000001},{"id":"6BA7B812-9DAD-11D1-80B4-00C04FD430C8",)"
                           R"("text":"Go forward ten meters.","date":800000000}])");
    session.forgetPreferences();
    startProgram();
    const Accessible welcome = session.elements().waitFor({"frame", ShellSession::welcomeTitle});
    keep(welcome, ShellSession::welcomeTitle, "welcome");
    session.tabTo(welcome, {"push button", "Grant Accessibility"});
    session.keyboard().strike(Key::space);
    keep(session.elements().waitFor({"dialog", ShellSession::turnOnQuestion}), "Corvandi", "accessibility");
    session.keyboard().strike(Key::escape);
    ASSERT_TRUE(session.windows().waitUntilActive(ShellSession::welcomeTitle));
    session.tabTo(welcome, {"push button", "Continue"});
    session.keyboard().strike(Key::enter);

    const Accessible settings = session.elements().waitFor({"frame", ShellSession::settingsTitle});
    keep(settings, ShellSession::settingsTitle, "general");
    for (const std::string page : {"Vocabulary", "History", "Permissions"}) {
        session.keyboard().strike(Key::down);
        settings.waitFor({"layered pane", page});
        keep(settings, ShellSession::settingsTitle, page);
    }

    session.keyboard().strike(Key::up);
    session.tabTo(settings, {"push button", "Clear History"});
    session.keyboard().strike(Key::space);
    keep(session.elements().waitFor({"", "Clear all history?"}), "Corvandi", "clear");
    session.keyboard().strike(Key::escape);
    ASSERT_TRUE(session.windows().waitUntilActive(ShellSession::settingsTitle));

    session.tabTo(settings, {"list", "Settings pages"});
    session.keyboard().strike(Key::up);
    session.tabTo(settings, {"push button", "Add an app"});
    session.keyboard().strike(Key::space);
    std::this_thread::sleep_for(300ms);
    session.keepScreenshot("menu");
    session.keyboard().strike(Key::up);
    session.keyboard().strike(Key::enter);
    keep(session.elements().waitFor({"dialog", "Choose an App"}), "Choose an App", "chooser");
}

} // namespace
} // namespace corvandi::testing
