#include "hud_view/hud_animation.h"

#include <gmock/gmock.h>

#include <cmath>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using ::testing::Each;
using ::testing::SizeIs;

HudFace faceOf(HUDState state, const QString& text = QString())
{
    return {state, std::vector<double>(28, 0.05), QStringLiteral("0:00"), text};
}

HudLayout pillOf(qreal width, qreal height)
{
    HudLayout layout;
    layout.pill = QRectF(-width / 2, -height / 2, width, height);
    return layout;
}

class HudAnimationTest : public ::testing::Test {
protected:
    HudAnimationTest() { animation.jumpTo(faceOf(HUDState::recording), pillOf(240, 46), 0ms); }
    void process(AnimationTime now)
    {
        animation.moveTo(faceOf(HUDState::processing, QStringLiteral("Transcribing")), pillOf(140, 30), now);
    }

    HudAnimation animation;
};

TEST_F(HudAnimationTest, WhatIsShownFirstIsThereAtOnce)
{
    const HudScene scene = animation.at(0ms);
    EXPECT_EQ(scene.pill, QSizeF(240, 46));
    ASSERT_THAT(scene.parts, SizeIs(1));
    EXPECT_EQ(scene.parts[0].opacity, 1);
    EXPECT_FALSE(animation.isChanging(0ms));
}

TEST_F(HudAnimationTest, AnotherStateSpringsTheCapsuleToItsSize)
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

TEST_F(HudAnimationTest, TheOldFaceFadesOutWhileTheNewOneFadesIn)
{
    process(1s);
    const HudScene begin = animation.at(1s);
    ASSERT_THAT(begin.parts, SizeIs(2));
    EXPECT_EQ(begin.parts[0].face.state, HUDState::recording);
    EXPECT_EQ(begin.parts[0].opacity, 1);
    EXPECT_EQ(begin.parts[1].face.state, HUDState::processing);
    EXPECT_EQ(begin.parts[1].opacity, 0);
    const HudScene middle = animation.at(1s + 60ms);
    ASSERT_THAT(middle.parts, SizeIs(2));
    Spring coming(0, 220ms);
    coming.moveTo(1, 1s);
    const double there = coming.at(1s + 60ms);
    EXPECT_NEAR(middle.parts[0].opacity, (1 - there) * (1 - there), 1e-9);
    EXPECT_NEAR(middle.parts[1].opacity, there * there, 1e-9);
    const HudScene end = animation.at(2s);
    ASSERT_THAT(end.parts, SizeIs(1));
    EXPECT_EQ(end.parts[0].opacity, 1);
}

TEST_F(HudAnimationTest, AThirdFaceMayComeWhileTheSecondIsStillComing)
{
    process(1s);
    animation.moveTo(faceOf(HUDState::notice), pillOf(60, 30), 1s + 50ms);
    const HudScene scene = animation.at(1s + 50ms);
    ASSERT_THAT(scene.parts, SizeIs(3));
    double sum = 0;
    for (const HudPart& part : scene.parts)
        sum += std::sqrt(part.opacity);
    EXPECT_NEAR(sum, 1, 1e-9);
    EXPECT_GT(scene.pill.width(), 140);
    EXPECT_THAT(animation.at(2s).parts, SizeIs(1));
    EXPECT_EQ(animation.pillAt(2s), QSizeF(60, 30));
}

TEST_F(HudAnimationTest, AnotherTextInTheSameStateIsThereAtOnce)
{
    process(1s);
    animation.moveTo(faceOf(HUDState::processing, QStringLiteral("Inserting")), pillOf(120, 30), 3s);
    EXPECT_EQ(animation.pillAt(3s), QSizeF(120, 30));
    EXPECT_THAT(animation.at(3s).parts, SizeIs(1));
}

TEST_F(HudAnimationTest, ATextThatFollowsItsStateBelongsToTheChange)
{
    animation.moveTo(faceOf(HUDState::processing), pillOf(42, 30), 1s);
    process(1s + 10us);
    EXPECT_NEAR(animation.pillAt(1s + 10us).width(), 240, 0.1);
    EXPECT_EQ(animation.pillAt(2s).width(), 140);
}

TEST_F(HudAnimationTest, BarsThatFollowTheirStateAreThereAtOnceAndLaterOnesEase)
{
    process(1s);
    HudFace recording = faceOf(HUDState::recording);
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

TEST_F(HudAnimationTest, LevelsDoNotKeepAChangeFromEnding)
{
    HudFace recording = faceOf(HUDState::recording);
    process(1s);
    animation.moveTo(recording, pillOf(240, 46), 2s);
    for (AnimationTime time = 2s; time < 3s; time += 43ms) {
        recording.bars.assign(28, recording.bars[0] > 0.5 ? 0.2 : 0.7);
        animation.moveTo(recording, pillOf(240, 46), time);
    }
    EXPECT_FALSE(animation.isChanging(2s + 450ms));
}

TEST_F(HudAnimationTest, TellsHowWideItGetsOnTheWay)
{
    EXPECT_EQ(animation.reachAt(0ms), 240);
    process(1s);
    EXPECT_EQ(animation.reachAt(1s + 100ms), 240);
    EXPECT_EQ(animation.reachAt(2s), 140);
    animation.moveTo(faceOf(HUDState::error), pillOf(500, 44), 3s);
    EXPECT_EQ(animation.reachAt(3s), 500);
    EXPECT_EQ(animation.reachAt(4s), 500);
}

TEST_F(HudAnimationTest, RecordingAndProcessingMoveAlwaysTheOthersUntilTheyHaveCome)
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

TEST_F(HudAnimationTest, AgesCountFromTheAppearanceOfAFace)
{
    process(1s);
    EXPECT_EQ(animation.at(1s + 50ms).parts[0].age, 1s + 50ms);
    EXPECT_EQ(animation.at(1s + 50ms).parts[1].age, 50ms);
}

TEST(DotPose, GrowsAndShrinksWithinSevenTenthsOfASecondEach)
{
    const auto expectPose = [](AnimationTime age, double scale, double opacity) {
        EXPECT_NEAR(dotPose(age).scale, scale, 1e-6) << age.count();
        EXPECT_NEAR(dotPose(age).opacity, opacity, 1e-6) << age.count();
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
