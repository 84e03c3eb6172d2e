#include "views/hud/hud_animation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

/// What nobody sees: the toolkit's curves are exact to a third of this.
constexpr double tolerance = 0.001;

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
    EXPECT_NEAR(easeOut(0.3425), 0.5, tolerance);
    EXPECT_GT(easeOut(0.1), 0.15);
    EXPECT_GT(easeOut(0.9), 0.98);
}

TEST(Easing, EaseInOutIsTheSameFromBothEnds)
{
    EXPECT_NEAR(easeInOut(0.5), 0.5, tolerance);
    EXPECT_LT(easeInOut(0.1), 0.03);
    for (const double x : {0.05, 0.2, 0.35, 0.45})
        EXPECT_NEAR(easeInOut(x), 1 - easeInOut(1 - x), 2 * tolerance);
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

using namespace std::chrono_literals;
using ::testing::Each;
using ::testing::SizeIs;

HUDFace faceOf(HUDState state, const QString& text = QString())
{
    return {state, std::vector<double>(28, 0.05), QStringLiteral("0:00"), text};
}

HUDLayout pillOf(qreal width, qreal height)
{
    HUDLayout layout;
    layout.pill = QRectF(-width / 2, -height / 2, width, height);
    return layout;
}

class HUDAnimationTest : public ::testing::Test {
protected:
    HUDAnimationTest() { animation.jumpTo(faceOf(HUDState::recording), pillOf(240, 46), 0ms); }
    void process(AnimationTime now)
    {
        animation.moveTo(faceOf(HUDState::processing, QStringLiteral("Transcribing")), pillOf(140, 30), now);
    }

    HUDAnimation animation;
};

TEST_F(HUDAnimationTest, WhatIsShownFirstIsThereAtOnce)
{
    const HUDScene scene = animation.at(0ms);
    EXPECT_EQ(scene.pill, QSizeF(240, 46));
    ASSERT_THAT(scene.parts, SizeIs(1));
    EXPECT_EQ(scene.parts[0].opacity, 1);
    EXPECT_FALSE(animation.isChanging(0ms));
}

TEST_F(HUDAnimationTest, AnotherStateSpringsTheCapsuleToItsSize)
{
    process(1s);
    EXPECT_EQ(animation.pillAt(1s), QSizeF(240, 46));
    Spring width(240, 220ms);
    width.moveTo(140, 1s);
    for (const AnimationTime time : {16ms, 60ms, 220ms})
        EXPECT_DOUBLE_EQ(animation.pillAt(1s + time).width(), width.at(1s + time));
    EXPECT_EQ(animation.pillAt(2s), QSizeF(140, 30));
    EXPECT_TRUE(animation.isChanging(1s + 220ms));
    EXPECT_FALSE(animation.isChanging(2s));
}

TEST_F(HUDAnimationTest, TheOldFaceFadesOutWhileTheNewOneFadesIn)
{
    process(1s);
    const HUDScene begin = animation.at(1s);
    ASSERT_THAT(begin.parts, SizeIs(2));
    EXPECT_EQ(begin.parts[0].face.state, HUDState::recording);
    EXPECT_EQ(begin.parts[0].opacity, 1);
    EXPECT_EQ(begin.parts[1].face.state, HUDState::processing);
    EXPECT_EQ(begin.parts[1].opacity, 0);
    const HUDScene middle = animation.at(1s + 60ms);
    ASSERT_THAT(middle.parts, SizeIs(2));
    Spring coming(0, 220ms);
    coming.moveTo(1, 1s);
    const double there = coming.at(1s + 60ms);
    EXPECT_NEAR(middle.parts[0].opacity, (1 - there) * (1 - there), 1e-9);
    EXPECT_NEAR(middle.parts[1].opacity, there * there, 1e-9);
    const HUDScene end = animation.at(2s);
    ASSERT_THAT(end.parts, SizeIs(1));
    EXPECT_EQ(end.parts[0].opacity, 1);
}

TEST_F(HUDAnimationTest, AThirdFaceMayComeWhileTheSecondIsStillComing)
{
    process(1s);
    animation.moveTo(faceOf(HUDState::notice), pillOf(60, 30), 1s + 50ms);
    const HUDScene scene = animation.at(1s + 50ms);
    ASSERT_THAT(scene.parts, SizeIs(3));
    double sum = 0;
    for (const HUDPart& part : scene.parts)
        sum += std::sqrt(part.opacity);
    EXPECT_NEAR(sum, 1, 1e-9);
    EXPECT_GT(scene.pill.width(), 140);
    EXPECT_THAT(animation.at(2s).parts, SizeIs(1));
    EXPECT_EQ(animation.pillAt(2s), QSizeF(60, 30));
}

TEST_F(HUDAnimationTest, AnotherTextInTheSameStateIsThereAtOnce)
{
    process(1s);
    animation.moveTo(faceOf(HUDState::processing, QStringLiteral("Inserting")), pillOf(120, 30), 3s);
    EXPECT_EQ(animation.pillAt(3s), QSizeF(120, 30));
    EXPECT_THAT(animation.at(3s).parts, SizeIs(1));
}

TEST_F(HUDAnimationTest, ATextThatFollowsItsStateBelongsToTheChange)
{
    animation.moveTo(faceOf(HUDState::processing), pillOf(42, 30), 1s);
    process(1s + 10us);
    EXPECT_NEAR(animation.pillAt(1s + 10us).width(), 240, 0.1);
    EXPECT_EQ(animation.pillAt(2s).width(), 140);
}

TEST_F(HUDAnimationTest, BarsThatFollowTheirStateAreThereAtOnceAndLaterOnesEase)
{
    process(1s);
    HUDFace recording = faceOf(HUDState::recording);
    recording.bars.assign(28, 0.9);
    animation.moveTo(recording, pillOf(240, 46), 2s);
    recording.bars.assign(28, 0.05);
    animation.moveTo(recording, pillOf(240, 46), 2s + 10us);
    EXPECT_THAT(animation.at(2s + 20us).parts.back().bars, Each(0.05));
    recording.bars.assign(28, 0.8);
    animation.moveTo(recording, pillOf(240, 46), 2s + 40ms);
    EXPECT_THAT(animation.at(2s + 40ms).parts.back().bars, Each(0.05));
    EXPECT_THAT(animation.at(2s + 130ms).parts.back().bars, Each(0.8));
}

TEST_F(HUDAnimationTest, LevelsDoNotKeepAChangeFromEnding)
{
    HUDFace recording = faceOf(HUDState::recording);
    process(1s);
    animation.moveTo(recording, pillOf(240, 46), 2s);
    for (AnimationTime time = 2s; time < 3s; time += 43ms) {
        recording.bars.assign(28, recording.bars[0] > 0.5 ? 0.2 : 0.7);
        animation.moveTo(recording, pillOf(240, 46), time);
    }
    EXPECT_FALSE(animation.isChanging(2s + 450ms));
}

TEST_F(HUDAnimationTest, TellsHowWideItGetsOnTheWay)
{
    EXPECT_EQ(animation.reachAt(0ms), 240);
    process(1s);
    EXPECT_EQ(animation.reachAt(1s + 100ms), 240);
    EXPECT_EQ(animation.reachAt(2s), 140);
    animation.moveTo(faceOf(HUDState::error), pillOf(500, 44), 3s);
    EXPECT_EQ(animation.reachAt(3s), 500);
    EXPECT_EQ(animation.reachAt(4s), 500);
}

TEST_F(HUDAnimationTest, RecordingAndProcessingMoveAlwaysTheOthersUntilTheyHaveCome)
{
    EXPECT_TRUE(animation.isMoving(1h));
    process(2h);
    EXPECT_TRUE(animation.isMoving(3h));
    for (const HUDState state : {HUDState::notice, HUDState::error}) {
        animation.jumpTo(faceOf(state), pillOf(60, 30), 4h);
        EXPECT_FALSE(animation.isMoving(4h));
    }
    animation.moveTo(faceOf(HUDState::notice), pillOf(60, 30), 5h);
    EXPECT_TRUE(animation.isMoving(5h));
    EXPECT_FALSE(animation.isMoving(5h + 500ms));
}

TEST_F(HUDAnimationTest, AgesCountFromTheAppearanceOfAFace)
{
    process(1s);
    EXPECT_EQ(animation.at(1s + 50ms).parts[0].age, 1s + 50ms);
    EXPECT_EQ(animation.at(1s + 50ms).parts[1].age, 50ms);
}

TEST(DotPose, GrowsAndShrinksWithinSevenTenthsOfASecondEach)
{
    const auto expectPose = [](AnimationTime age, double scale, double opacity) {
        EXPECT_NEAR(dotPose(age).scale, scale, tolerance) << age.count();
        EXPECT_NEAR(dotPose(age).opacity, opacity, tolerance) << age.count();
    };
    for (const AnimationTime round : {0ms, 1400ms, 14000ms}) {
        expectPose(round, 0.62, 0.55);
        expectPose(round + 350ms, 0.81, 0.775);
        expectPose(round + 700ms, 1, 1);
        expectPose(round + 1050ms, 0.81, 0.775);
    }
    EXPECT_LT(dotPose(100ms).scale, 0.66) << "gently at first";
    EXPECT_EQ(dotPose(900ms).scale, dotPose(500ms).scale) << "the way back is the way there";
}

TEST(SpinnerTurn, GoesRoundWithoutEnd)
{
    EXPECT_EQ(spinnerTurn(0ms), 0);
    EXPECT_NEAR(spinnerTurn(450ms), 0.5, 1e-9);
    EXPECT_NEAR(spinnerTurn(9450ms), 0.5, 1e-9);
}

} // namespace
} // namespace corvandi
