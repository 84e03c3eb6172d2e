#include "system/desktop/portal_appearance.h"

#include "portal_desktop.h"
#include "support/event_loop.h"
#include "support/recording_log.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <optional>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using testing::Portal;
using testing::RecordingLog;
using testing::runFor;
using testing::SettingsBackend;
using testing::waitUntil;

class PortalAppearanceTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!Portal::isInstalled())
            GTEST_SKIP() << "no desktop portal is installed (package xdg-desktop-portal)";
        portal.start();
    }
    PortalAppearance& open() { return appearance.emplace(QDBusConnection::sessionBus(), log); }
    [[nodiscard]] bool becomes(ColorScheme scheme)
    {
        return waitUntil([&] { return appearance->colorScheme() == scheme; });
    }

    RecordingLog log;
    SettingsBackend backend{1};
    Portal portal;
    std::optional<PortalAppearance> appearance;
};

TEST_F(PortalAppearanceTest, KnowsAfterAMomentWhatTheDesktopWants)
{
    open();
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::noPreference);
    EXPECT_TRUE(becomes(ColorScheme::dark));
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(PortalAppearanceTest, FollowsEveryChange)
{
    open();
    ASSERT_TRUE(becomes(ColorScheme::dark));
    int changes = 0;
    const auto registration = appearance->onChange([&] { ++changes; });
    backend.set(2);
    EXPECT_TRUE(becomes(ColorScheme::light));
    backend.set(0);
    EXPECT_TRUE(becomes(ColorScheme::noPreference));
    EXPECT_EQ(changes, 2);
}

TEST_F(PortalAppearanceTest, ANoticeWithoutAChangeIsNotToldOf)
{
    open();
    ASSERT_TRUE(becomes(ColorScheme::dark));
    int changes = 0;
    const auto registration = appearance->onChange([&] { ++changes; });
    backend.set(1);
    backend.set(1);
    backend.set(2);
    ASSERT_TRUE(becomes(ColorScheme::light));
    EXPECT_EQ(changes, 1);
}

TEST_F(PortalAppearanceTest, AValueThatNobodyKnowsIsNoPreference)
{
    open();
    ASSERT_TRUE(becomes(ColorScheme::dark));
    backend.set(77);
    EXPECT_TRUE(becomes(ColorScheme::noPreference));
}

TEST_F(PortalAppearanceTest, ADestroyedRegistrationIsNotCalledBack)
{
    open();
    int changes = 0;
    auto registration = appearance->onChange([&] { ++changes; });
    registration.reset();
    ASSERT_TRUE(becomes(ColorScheme::dark));
    EXPECT_EQ(changes, 0);
}

TEST_F(PortalAppearanceTest, ARegistrationMayOutliveTheAppearance)
{
    open();
    auto registration = appearance->onChange([] {});
    appearance.reset();
    registration.reset();
    backend.set(2);
    runFor(50ms);
}

TEST_F(PortalAppearanceTest, APortalThatGoesLeavesTheLastWishAndOneThatComesIsAsked)
{
    open();
    ASSERT_TRUE(becomes(ColorScheme::dark));
    portal.end();
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::dark);
    backend.set(2);
    portal.start();
    EXPECT_TRUE(becomes(ColorScheme::light));
}

TEST_F(PortalAppearanceTest, AHungPortalHoldsNobodyUpAndIsLogged)
{
    portal.freeze();
    QElapsedTimer time;
    time.start();
    open();
    EXPECT_EQ(appearance->colorScheme(), ColorScheme::noPreference);
    EXPECT_LT(time.elapsed(), 1000) << "it would be five seconds";
    EXPECT_TRUE(waitUntil([this] { return log.lines().size() == 1; }, 8s));
    portal.thaw();
    backend.set(2);
    EXPECT_TRUE(becomes(ColorScheme::light));
}

TEST(PortalAppearance, WithoutABusThereIsNoPreferenceAndNoComplaint)
{
    RecordingLog log;
    const QDBusConnection nowhere(QStringLiteral("a connection that nobody has made"));
    PortalAppearance appearance(nowhere, log);
    const auto registration = appearance.onChange([] {});
    runFor(50ms);
    EXPECT_EQ(appearance.colorScheme(), ColorScheme::noPreference);
    EXPECT_TRUE(log.lines().empty());
}

} // namespace
} // namespace corvandi
