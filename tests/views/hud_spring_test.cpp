#include "hud_view/spring.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

constexpr auto response = 220ms;

/// The share of its way that a critically damped spring has made from rest: 1 - (1 + w t) e^(-w t) with
/// w = 2 pi / response, the solution of x'' + 2 w x' + w^2 (x - 1) = 0 with x(0) = x'(0) = 0.
double shareAfter(AnimationTime time)
{
    const double wt = 2 * std::numbers::pi * std::chrono::duration<double>(time) / response;
    return 1 - (1 + wt) * std::exp(-wt);
}

TEST(Spring, RestsWhereItIsCreated)
{
    const Spring spring(40, response);
    EXPECT_EQ(spring.at(0ms), 40);
    EXPECT_EQ(spring.at(10s), 40);
    EXPECT_TRUE(spring.isAtRest(0ms));
}

TEST(Spring, MovesAsACriticallyDampedOne)
{
    Spring spring(100, response);
    spring.moveTo(200, 5s);
    for (const AnimationTime time : {0ms, 1ms, 16ms, 35ms, 70ms, 110ms, 220ms, 330ms})
        EXPECT_NEAR(spring.at(5s + time), 100 + 100 * shareAfter(time), 0.001) << time.count();
    // 1 - (1 + 2 pi) e^(-2 pi): nearly there after one response.
    EXPECT_NEAR(spring.at(5s + 220ms), 198.64, 0.01);
}

TEST(Spring, NeverOvershootsNorTurnsBack)
{
    Spring spring(0, response);
    spring.moveTo(100, 0ms);
    double before = 0;
    for (AnimationTime time = 1ms; time < 1s; time += 1ms) {
        EXPECT_GE(spring.at(time), before);
        EXPECT_LE(spring.at(time), 100);
        before = spring.at(time);
    }
}

TEST(Spring, ComesToRestAtItsTargetWithoutAVisibleJump)
{
    Spring spring(0, response);
    spring.moveTo(300, 0ms);
    AnimationTime rest = 0ms;
    while (!spring.isAtRest(rest))
        rest += 1ms;
    EXPECT_LT(rest, 500ms);
    EXPECT_EQ(spring.at(rest), 300);
    EXPECT_NEAR(spring.at(rest - 1ms), 300, 0.05);
}

TEST(Spring, KeepsItsPlaceAndSpeedWhenTheTargetChanges)
{
    Spring spring(0, response);
    spring.moveTo(100, 0ms);
    const double speed = (spring.at(50ms) - spring.at(50ms - 10us)) / 10;
    const double place = spring.at(50ms);
    spring.moveTo(20, 50ms);
    EXPECT_DOUBLE_EQ(spring.at(50ms), place);
    EXPECT_NEAR((spring.at(50ms + 10us) - spring.at(50ms)) / 10, speed, std::abs(speed) * 0.01);
    EXPECT_EQ(spring.at(2s), 20);
}

TEST(Spring, TheSameTargetAgainChangesNothing)
{
    Spring told(0, response);
    Spring toldAgain(0, response);
    told.moveTo(100, 0ms);
    toldAgain.moveTo(100, 0ms);
    for (AnimationTime time = 10ms; time < 400ms; time += 10ms)
        toldAgain.moveTo(100, time);
    EXPECT_EQ(toldAgain.at(200ms), told.at(200ms));
    EXPECT_EQ(toldAgain.isAtRest(450ms), told.isAtRest(450ms));
    EXPECT_TRUE(told.isAtRest(450ms));
}

TEST(Spring, AJumpIsAtOnceAndEndsTheMotion)
{
    Spring spring(0, response);
    spring.moveTo(100, 0ms);
    spring.jumpTo(7);
    EXPECT_EQ(spring.at(50ms), 7);
    EXPECT_TRUE(spring.isAtRest(50ms));
    EXPECT_EQ(spring.target(), 7);
}

} // namespace
} // namespace corvandi
