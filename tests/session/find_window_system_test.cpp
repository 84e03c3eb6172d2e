#include "session/find_window_system.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

class FindWindowSystemTest : public ::testing::Test {
protected:
    [[nodiscard]] std::variant<WindowSystem, SessionRefusal> found() const
    {
        return findWindowSystem(environment);
    }
    [[nodiscard]] SessionRefusal refusal() const { return std::get<SessionRefusal>(found()); }

    SessionEnvironment environment{.sessionType = QStringLiteral("x11"),
                                   .waylandDisplay = {},
                                   .x11Display = qEnvironmentVariable("DISPLAY")};
};

TEST_F(FindWindowSystemTest, AnX11SessionNamesTheToolkitsPluginForIt)
{
    const auto system = found();
    ASSERT_TRUE(std::holds_alternative<WindowSystem>(system));
    EXPECT_EQ(std::get<WindowSystem>(system).toolkitPlatform, QStringLiteral("xcb"));
}

TEST_F(FindWindowSystemTest, AnXServerThatWasStartedByHandNeedsNoSessionType)
{
    environment.sessionType.clear();
    EXPECT_TRUE(std::holds_alternative<WindowSystem>(found()));
}

TEST_F(FindWindowSystemTest, AWaylandSessionIsRefusedInWordsAlthoughItHasAnXServer)
{
    environment.waylandDisplay = QStringLiteral("wayland-0");
    EXPECT_TRUE(refusal().reason.contains(QStringLiteral("Wayland")));
    EXPECT_TRUE(refusal().words.contains(QStringLiteral("Wayland")));
}

TEST_F(FindWindowSystemTest, TheTypeOfTheSessionAloneTellsAWaylandSession)
{
    environment.sessionType = QStringLiteral("wayland");
    EXPECT_FALSE(refusal().words.isEmpty());
}

TEST_F(FindWindowSystemTest, WithoutADisplayItIsNamedAndNobodyCanBeTold)
{
    const QByteArray display = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":4711");
    environment.x11Display = QStringLiteral(":4711");
    const SessionRefusal without = refusal();
    qputenv("DISPLAY", display);
    EXPECT_EQ(without.reason,
              QStringLiteral("no graphical session: the X display \":4711\" can't be opened"));
    EXPECT_TRUE(without.words.isEmpty());
}

} // namespace
} // namespace corvandi
