#include "hud_view/easing.h"

#include "hud_view/bar_meter.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

TEST(Easing, ShareIsTheTimeThatHasPassedWithinTheDuration)
{
    EXPECT_EQ(share(0ms, 90ms), 0);
    EXPECT_EQ(share(45ms, 90ms), 0.5);
    EXPECT_EQ(share(90ms, 90ms), 1);
    EXPECT_EQ(share(-1ms, 90ms), 0);
    EXPECT_EQ(share(1h, 90ms), 1);
}

TEST(Easing, CurvesBeginAndEndExactly)
{
    for (const auto curve : {easeOut, easeInOut}) {
        EXPECT_EQ(curve(0), 0);
        EXPECT_EQ(curve(1), 1);
        EXPECT_EQ(curve(-3), 0);
        EXPECT_EQ(curve(3), 1);
    }
}

TEST(Easing, CurvesOnlyRise)
{
    for (const auto curve : {easeOut, easeInOut}) {
        for (int i = 1; i <= 1000; ++i)
            EXPECT_GE(curve(i / 1000.0), curve((i - 1) / 1000.0));
    }
}

TEST(Easing, EaseOutIsQuickFirst)
{
    // The curve's point at its parameter 1/2 is (0.3425, 0.5).
    EXPECT_NEAR(easeOut(0.3425), 0.5, 1e-5);
    EXPECT_GT(easeOut(0.1), 0.15);
    EXPECT_GT(easeOut(0.9), 0.98);
}

TEST(Easing, EaseInOutIsTheSameFromBothEnds)
{
    EXPECT_NEAR(easeInOut(0.5), 0.5, 1e-6);
    EXPECT_LT(easeInOut(0.1), 0.03);
    for (const double x : {0.05, 0.2, 0.35, 0.45})
        EXPECT_NEAR(easeInOut(x), 1 - easeInOut(1 - x), 1e-5);
}

TEST(BarMeter, GoesToNewHeightsInNinetyMilliseconds)
{
    BarMeter meter;
    meter.jumpTo({0.2, 0.8});
    EXPECT_THAT(meter.at(0ms), ElementsAre(0.2, 0.8));
    meter.moveTo({1.0, 0.8}, 1s);
    EXPECT_THAT(meter.at(1s), ElementsAre(0.2, 0.8));
    EXPECT_DOUBLE_EQ(meter.at(1s + 45ms)[0], 0.2 + 0.8 * easeOut(0.5));
    EXPECT_THAT(meter.at(1s + 90ms), ElementsAre(1.0, 0.8));
    EXPECT_FALSE(meter.isAtRest(1s + 89ms));
    EXPECT_TRUE(meter.isAtRest(1s + 90ms));
}

TEST(BarMeter, AChangeOnTheWayStartsFromWhatIsSeen)
{
    BarMeter meter;
    meter.jumpTo({0.0});
    meter.moveTo({1.0}, 0ms);
    const double seen = meter.at(40ms)[0];
    meter.moveTo({0.5}, 40ms);
    EXPECT_DOUBLE_EQ(meter.at(40ms)[0], seen);
    EXPECT_DOUBLE_EQ(meter.at(130ms)[0], 0.5);
}

TEST(BarMeter, MoreOrFewerBarsAreShownAtOnce)
{
    BarMeter meter;
    meter.jumpTo({0.5});
    meter.moveTo({0.5, 0.9}, 0ms);
    EXPECT_THAT(meter.at(1ms), ElementsAre(0.5, 0.9));
    meter.moveTo({0.5}, 1s);
    EXPECT_THAT(meter.at(1s), ElementsAre(0.5));
}

} // namespace
} // namespace corvandi
