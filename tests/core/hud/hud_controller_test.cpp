#include "core/hud/hud_controller.h"

#include "support/fake_hud_panel.h"
#include "support/virtual_queue.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using ::testing::DoubleNear;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// Levels are single-precision numbers.
constexpr double tolerance = 1e-6;

class HUDControllerTest : public ::testing::Test {
protected:
    /// The number of times the model told of a change while `action` ran.
    template<class Action>
    int noticesDuring(Action action)
    {
        int notices = 0;
        const auto connection = QObject::connect(&hud.model(), &HUDModel::changed, [&notices] { ++notices; });
        action();
        QObject::disconnect(connection);
        return notices;
    }
    /// The number of times the model's state took another value while `action` ran.
    template<class Action>
    int stateChangesDuring(Action action)
    {
        HUDState last = hud.model().state();
        int changes = 0;
        const auto connection = QObject::connect(&hud.model(), &HUDModel::changed, [&] {
            changes += hud.model().state() != last ? 1 : 0;
            last = hud.model().state();
        });
        action();
        QObject::disconnect(connection);
        return changes;
    }
    double newestBar() { return hud.model().bars().back(); }

    testing::VirtualQueue queue;
    testing::FakeHUDPanelFactory panels;
    HUDController hud{queue, panels};
};

TEST_F(HUDControllerTest, MakesNoPanelAndNoTimerBeforeItIsShown)
{
    hud.showProcessing(QStringLiteral("Transcribing"));
    hud.hide(0ms);
    EXPECT_THAT(panels.models, IsEmpty());
    EXPECT_EQ(queue.timerCount(), 0u);
}

TEST_F(HUDControllerTest, MakesOnePanelForItsModelAndKeepsIt)
{
    hud.showRecording();
    hud.hide(0ms);
    hud.showTransient(QStringLiteral("Copied"), HUDState::notice);
    EXPECT_THAT(panels.models, ElementsAre(&hud.model()));
}

TEST_F(HUDControllerTest, PresentsByPlacingClearingShowingAndFadingIn)
{
    hud.showRecording();
    EXPECT_THAT(panels.calls, ElementsAre("setFrame", "setAlpha", "orderFront", "fadeTo"));
    ASSERT_THAT(panels.fades, SizeIs(1));
    EXPECT_EQ(panels.fades.front().alpha, 1);
    EXPECT_EQ(panels.fades.front().duration, 140ms);
}

TEST_F(HUDControllerTest, TheFadeBeginsFromFullTransparency)
{
    hud.showRecording();
    ASSERT_THAT(panels.fades, SizeIs(1));
    EXPECT_EQ(panels.fades.front().from, 0);
}

TEST_F(HUDControllerTest, StandsCentredNinetyPointsAboveTheBottomOfTheFreeScreen)
{
    panels.screen = PanelRect{100, 28, 1280, 772};
    hud.showRecording();
    EXPECT_EQ(panels.frame, (PanelRect{100 + 640 - 150, 28 + 772 - 90 - 64, 300, 64}));
}

TEST_F(HUDControllerTest, FollowsAScreenThatHasChanged)
{
    hud.showRecording();
    panels.screen = PanelRect{0, 0, 1920, 1080};
    hud.showRecording();
    EXPECT_EQ(panels.frame, (PanelRect{810, 926, 300, 64}));
}

TEST_F(HUDControllerTest, WithoutAScreenThePositionIsLeftAlone)
{
    panels.screen.reset();
    hud.showRecording();
    EXPECT_EQ(panels.frame, std::nullopt);
    EXPECT_THAT(panels.calls, ElementsAre("setAlpha", "orderFront", "fadeTo"));
}

TEST_F(HUDControllerTest, RecordingBeginsWithARestingMeterAndNoTime)
{
    hud.showRecording();
    hud.pushLevel(1);
    queue.advance(3s);
    hud.showTransient(QStringLiteral("Copied"), HUDState::notice);
    hud.showRecording();
    EXPECT_EQ(hud.model().state(), HUDState::recording);
    EXPECT_EQ(hud.model().statusText(), QString());
    EXPECT_EQ(hud.model().elapsed(), QStringLiteral("0:00"));
    EXPECT_THAT(hud.model().bars(), SizeIs(28));
    EXPECT_THAT(hud.model().bars(), Each(0.05));
}

TEST_F(HUDControllerTest, TheElapsedTimeCountsWholeSeconds)
{
    const std::pair<std::chrono::milliseconds, const char*> moments[] = {
        {999ms, "0:00"},   {1000ms, "0:01"},  {5000ms, "0:05"},    {59900ms, "0:59"},
        {60000ms, "1:00"}, {65000ms, "1:05"}, {600000ms, "10:00"}, {3600000ms, "60:00"},
    };
    hud.showRecording();
    std::chrono::milliseconds passed{};
    for (const auto& [moment, text] : moments) {
        queue.advance(moment - passed);
        passed = moment;
        EXPECT_EQ(hud.model().elapsed(), QString::fromLatin1(text));
    }
}

TEST_F(HUDControllerTest, TheElapsedTimeIsLookedAtEveryFifthOfASecond)
{
    queue.advance(70ms);
    hud.showRecording();
    queue.advance(999ms);
    EXPECT_EQ(hud.model().elapsed(), QStringLiteral("0:00"));
    queue.advance(1ms);
    EXPECT_EQ(hud.model().elapsed(), QStringLiteral("0:01"));
    EXPECT_EQ(queue.timerCount(), 1u);
}

TEST_F(HUDControllerTest, TicksWithinTheSameSecondAnnounceNothing)
{
    hud.showRecording();
    EXPECT_EQ(noticesDuring([this] { queue.advance(900ms); }), 0);
    EXPECT_EQ(noticesDuring([this] { queue.advance(100ms); }), 1);
}

TEST_F(HUDControllerTest, ANewRecordingCountsFromItsOwnStart)
{
    hud.showRecording();
    queue.advance(10s);
    hud.showRecording();
    queue.advance(2s);
    EXPECT_EQ(hud.model().elapsed(), QStringLiteral("0:02"));
    EXPECT_EQ(queue.timerCount(), 1u);
}

TEST_F(HUDControllerTest, LevelsBecomeBarHeights)
{
    const std::pair<float, double> levels[] = {
        {0.0F, 0.06},          {0.0001F, 0.06}, {0.01F, 0.36}, {0.04F, 0.72},
        {0.25F, 1.0},          {1.0F, 1.0},     {-0.5F, 0.06}, {std::numeric_limits<float>::infinity(), 1.0},
        {std::nanf(""), 0.06},
    };
    hud.showRecording();
    for (const auto& [level, height] : levels) {
        hud.pushLevel(level);
        EXPECT_THAT(newestBar(), DoubleNear(height, tolerance)) << level;
    }
}

TEST_F(HUDControllerTest, TheMeterScrollsAndKeepsItsLength)
{
    hud.showRecording();
    hud.pushLevel(0.01F);
    hud.pushLevel(1);
    ASSERT_THAT(hud.model().bars(), SizeIs(28));
    EXPECT_THAT(hud.model().bars()[26], DoubleNear(0.36, tolerance));
    EXPECT_EQ(hud.model().bars()[27], 1.0);
    EXPECT_EQ(hud.model().bars()[25], 0.05);
    for (int i = 0; i < 28; ++i)
        hud.pushLevel(0);
    EXPECT_THAT(hud.model().bars(), SizeIs(28));
    EXPECT_THAT(hud.model().bars(), Each(0.06));
}

TEST_F(HUDControllerTest, LevelsOutsideOfARecordingChangeNothing)
{
    EXPECT_EQ(noticesDuring([this] { hud.pushLevel(1); }), 0);
    hud.showRecording();
    hud.showProcessing(QStringLiteral("Transcribing"));
    EXPECT_EQ(noticesDuring([this] { hud.pushLevel(1); }), 0);
    for (const HUDState state : {HUDState::notice, HUDState::error}) {
        hud.showTransient(QStringLiteral("Copied"), state);
        EXPECT_EQ(noticesDuring([this] { hud.pushLevel(1); }), 0);
    }
    EXPECT_THAT(hud.model().bars(), Each(0.05));
}

TEST_F(HUDControllerTest, ProcessingShowsItsLineAndStopsTheTime)
{
    hud.showRecording();
    queue.advance(2s);
    panels.calls.clear();
    hud.showProcessing(QStringLiteral("Transcribing"));
    EXPECT_EQ(hud.model().state(), HUDState::processing);
    EXPECT_EQ(hud.model().statusText(), QStringLiteral("Transcribing"));
    queue.advance(1h);
    EXPECT_EQ(hud.model().elapsed(), QStringLiteral("0:02"));
    EXPECT_THAT(panels.calls, IsEmpty());
    EXPECT_TRUE(panels.isVisible);
    EXPECT_EQ(queue.timerCount(), 0u);
}

TEST_F(HUDControllerTest, ProcessingLeavesAPendingHideAlone)
{
    hud.showTransient(QStringLiteral("Copied"), HUDState::notice);
    hud.showProcessing(QStringLiteral("Polishing"));
    queue.advance(1800ms);
    EXPECT_FALSE(panels.isVisible);
}

TEST_F(HUDControllerTest, ATransientStaysForOnePointEightSeconds)
{
    for (const HUDState state : {HUDState::notice, HUDState::error}) {
        hud.showRecording();
        hud.showTransient(QStringLiteral("Copied"), state);
        EXPECT_EQ(hud.model().state(), state);
        EXPECT_EQ(hud.model().statusText(), QStringLiteral("Copied"));
        queue.advance(1799ms);
        EXPECT_TRUE(panels.isVisible);
        queue.advance(1ms);
        EXPECT_FALSE(panels.isVisible);
        EXPECT_EQ(hud.model().state(), HUDState::processing);
        EXPECT_EQ(queue.timerCount(), 0u);
    }
}

TEST_F(HUDControllerTest, ATransientIsPresentedAnewAndStopsTheTime)
{
    hud.showRecording();
    panels.calls.clear();
    hud.showTransient(QStringLiteral("No speech"), HUDState::error);
    EXPECT_THAT(panels.calls, ElementsAre("setFrame", "setAlpha", "orderFront", "fadeTo"));
    EXPECT_EQ(queue.timerCount(), 1u) << "only the pending hide";
}

TEST_F(HUDControllerTest, ASecondTransientStaysForItsFullTime)
{
    hud.showTransient(QStringLiteral("Copied"), HUDState::notice);
    queue.advance(1s);
    hud.showTransient(QStringLiteral("No speech"), HUDState::error);
    queue.advance(1799ms);
    EXPECT_TRUE(panels.isVisible);
    queue.advance(1ms);
    EXPECT_FALSE(panels.isVisible);
}

TEST_F(HUDControllerTest, HidingAfterNothingHappensInsideTheCall)
{
    for (const MainQueue::Duration delay : {MainQueue::Duration(0), MainQueue::Duration(-1s)}) {
        hud.showRecording();
        panels.calls.clear();
        hud.hide(delay);
        EXPECT_THAT(panels.calls, ElementsAre("orderOut"));
        EXPECT_EQ(hud.model().state(), HUDState::processing);
        EXPECT_EQ(queue.timerCount(), 0u);
    }
}

TEST_F(HUDControllerTest, HidingLaterKeepsTheFaceUntilThen)
{
    hud.showRecording();
    hud.hide(150ms);
    queue.advance(149ms);
    EXPECT_TRUE(panels.isVisible);
    EXPECT_EQ(hud.model().state(), HUDState::recording);
    queue.advance(1ms);
    EXPECT_FALSE(panels.isVisible);
    EXPECT_EQ(hud.model().state(), HUDState::processing);
    EXPECT_EQ(queue.timerCount(), 0u);
}

TEST_F(HUDControllerTest, ASecondHideReplacesTheFirst)
{
    hud.showRecording();
    hud.hide(100ms);
    hud.hide(500ms);
    queue.advance(499ms);
    EXPECT_TRUE(panels.isVisible);
    queue.advance(1ms);
    EXPECT_FALSE(panels.isVisible);
}

TEST_F(HUDControllerTest, AnEarlierHideReplacesALaterOneForGood)
{
    hud.showRecording();
    hud.hide(500ms);
    hud.hide(0ms);
    panels.calls.clear();
    queue.advance(1s);
    EXPECT_THAT(panels.calls, IsEmpty());
}

TEST_F(HUDControllerTest, ANewRecordingIsNeverHiddenByThePreviousOne)
{
    hud.showTransient(QStringLiteral("Copied"), HUDState::notice);
    queue.advance(1s);
    hud.showRecording();
    queue.advance(1min);
    EXPECT_TRUE(panels.isVisible);
    EXPECT_EQ(hud.model().state(), HUDState::recording);
}

TEST_F(HUDControllerTest, AStateThatStaysTheSameIsNotAnnouncedAgain)
{
    hud.showRecording();
    // The line, the bars and the time are set once each.
    EXPECT_EQ(noticesDuring([this] { hud.showRecording(); }), 3);
    hud.showProcessing(QStringLiteral("Transcribing"));
    EXPECT_EQ(noticesDuring([this] { hud.showProcessing(QStringLiteral("Polishing")); }), 1);
    hud.showTransient(QStringLiteral("Copied"), HUDState::notice);
    EXPECT_EQ(noticesDuring([this] { hud.showTransient(QStringLiteral("Saved"), HUDState::notice); }), 1);
    hud.hide(0ms);
    EXPECT_EQ(noticesDuring([this] { hud.hide(0ms); }), 0);
}

TEST_F(HUDControllerTest, AStateThatChangesIsAnnouncedOnce)
{
    EXPECT_EQ(stateChangesDuring([this] { hud.showRecording(); }), 1);
    EXPECT_EQ(stateChangesDuring([this] { hud.showProcessing(QStringLiteral("Transcribing")); }), 1);
    EXPECT_EQ(stateChangesDuring([this] { hud.showTransient(QString(), HUDState::error); }), 1);
    EXPECT_EQ(stateChangesDuring([this] { hud.hide(0ms); }), 1);
}

TEST_F(HUDControllerTest, AHiddenPanelHasNoTimerWhateverWentBefore)
{
    hud.showRecording();
    hud.pushLevel(0.2F);
    hud.showProcessing(QStringLiteral("Transcribing"));
    hud.hide(150ms);
    queue.advance(150ms);
    EXPECT_EQ(queue.timerCount(), 0u);
    EXPECT_FALSE(panels.isVisible);
}

TEST_F(HUDControllerTest, NothingHappensAfterTheControllerIsGone)
{
    {
        HUDController other(queue, panels);
        other.showRecording();
        other.hide(1s);
    }
    panels.calls.clear();
    queue.advance(1min);
    EXPECT_EQ(queue.timerCount(), 0u);
    EXPECT_THAT(panels.calls, IsEmpty());
}

} // namespace
} // namespace corvandi
