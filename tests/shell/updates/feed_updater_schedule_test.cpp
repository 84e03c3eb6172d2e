#include "shell/updates/updater_fixture.h"

namespace corvandi {
namespace {

using namespace testing;
using namespace std::chrono_literals;

class FeedUpdaterScheduleTest : public UpdaterTest {
protected:
    FeedUpdaterScheduleTest() { defaults.persistent[FeedUpdater::automaticChecksKey] = true; }

    [[nodiscard]] int64_t unixTime() const
    {
        return static_cast<int64_t>(clock.now().secondsSinceUnixEpoch());
    }
    void setLastCheck(int64_t time) { defaults.persistent[FeedUpdater::lastCheckKey] = time; }
};

TEST_F(FeedUpdaterScheduleTest, WithoutTheWishNoTimerExists)
{
    defaults.persistent.clear();
    updater();
    EXPECT_EQ(queue.timerCount(), 0U);
}

TEST_F(FeedUpdaterScheduleTest, TheFirstCheckComesAMinuteAfterTheStart)
{
    updater();
    queue.advance(59s);
    EXPECT_EQ(source.requests, 0);
    queue.advance(1s);
    EXPECT_EQ(source.requests, 1);
}

TEST_F(FeedUpdaterScheduleTest, ACheckHappensOnceADay)
{
    updater();
    queue.advance(1min);
    source.answer(release("1.0"));
    queue.advance(23h + 59min + 59s);
    EXPECT_EQ(source.requests, 1);
    queue.advance(1s);
    EXPECT_EQ(source.requests, 2);
}

TEST_F(FeedUpdaterScheduleTest, ARestartDoesNotCheckAgainTheSameDay)
{
    setLastCheck(unixTime() - 3600);
    updater();
    queue.advance(22h + 59min + 59s);
    EXPECT_EQ(source.requests, 0);
    queue.advance(1s);
    EXPECT_EQ(source.requests, 1);
    EXPECT_EQ(defaults.integer(FeedUpdater::lastCheckKey), unixTime());
}

TEST_F(FeedUpdaterScheduleTest, APersonsCheckCountsAsTheOneOfTheDay)
{
    updater();
    checkAndFind(release("1.0"));
    queue.advance(23h);
    EXPECT_EQ(source.requests, 1);
}

TEST_F(FeedUpdaterScheduleTest, AFailedCheckCountsAsTheOneOfTheDay)
{
    updater();
    queue.advance(1min);
    source.answer(UpdateFailure{UpdateFailure::Kind::unreachable, QStringLiteral("no route")});
    queue.advance(23h);
    EXPECT_EQ(source.requests, 1);
}

TEST_F(FeedUpdaterScheduleTest, ALastCheckInTheFutureIsNotBelieved)
{
    setLastCheck(unixTime() + 1'000'000);
    updater();
    queue.advance(1min);
    EXPECT_EQ(source.requests, 1);
}

TEST_F(FeedUpdaterScheduleTest, AnImpossibleLastCheckIsNotBelieved)
{
    for (const int64_t time :
         {std::numeric_limits<int64_t>::min(), std::numeric_limits<int64_t>::max(), int64_t{0}}) {
        setLastCheck(time);
        const int before = source.requests;
        updater();
        queue.advance(1min);
        EXPECT_EQ(source.requests, before + 1) << time;
        endProgram();
    }
}

TEST_F(FeedUpdaterScheduleTest, TheTimeThatTheMachineSleptCounts)
{
    setLastCheck(unixTime() - 3600);
    updater();
    queue.advance(30min);
    clock.start.secondsSinceReference += 86'400;
    queue.advance(30min);
    EXPECT_EQ(source.requests, 1);
}

TEST_F(FeedUpdaterScheduleTest, TakingTheWishBackEndsIt)
{
    updater();
    defaults.persistent[FeedUpdater::automaticChecksKey] = false;
    queue.advance(48h);
    EXPECT_EQ(source.requests, 0);
    EXPECT_EQ(queue.timerCount(), 0U);
}

TEST_F(FeedUpdaterScheduleTest, NothingNewIsNotShown)
{
    updater();
    queue.advance(1min);
    EXPECT_TRUE(presenter.showsNothing());
    source.answer(release("1.0"));
    EXPECT_TRUE(presenter.showsNothing());
    EXPECT_TRUE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterScheduleTest, AFailureIsLoggedAndNotShown)
{
    updater();
    queue.advance(1min);
    source.answer(UpdateFailure{UpdateFailure::Kind::unreachable, QStringLiteral("no route")});
    EXPECT_TRUE(presenter.showsNothing());
    EXPECT_TRUE(log.contains(QStringLiteral("no route")));
}

TEST_F(FeedUpdaterScheduleTest, AReleaseForANewerSystemIsNotShown)
{
    updater();
    queue.advance(1min);
    source.answer(release("1.2", R"("minimumSystem": {"debian": "13"})"));
    EXPECT_TRUE(presenter.showsNothing());
}

TEST_F(FeedUpdaterScheduleTest, AReleaseIsAnnouncedWithoutTakingTheFocus)
{
    updater();
    queue.advance(1min);
    source.answer(release("1.2"));
    ASSERT_TRUE(presenter.question);
    EXPECT_EQ(presenter.question->attention, Attention::waitForIt);
    EXPECT_TRUE(opened.empty());
}

TEST_F(FeedUpdaterScheduleTest, OnceThePersonHasSaidYesFailuresAreShown)
{
    updater();
    queue.advance(1min);
    source.answer(release("1.2"));
    hasBrowser = false;
    presenter.answer(Answer::accept);
    EXPECT_TRUE(presenter.message);
}

TEST_F(FeedUpdaterScheduleTest, AnOpenQuestionIsNotAskedTwice)
{
    updater();
    queue.advance(1min);
    source.answer(release("1.2"));
    queue.advance(72h);
    EXPECT_EQ(source.requests, 1);

    presenter.answer(Answer::decline);
    queue.advance(1min);
    EXPECT_EQ(source.requests, 2);
}

TEST_F(FeedUpdaterScheduleTest, APersonWhoAsksMeanwhileGetsToSeeTheCheck)
{
    updater();
    queue.advance(1min);
    updater().checkForUpdates();
    EXPECT_EQ(source.requests, 1);
    EXPECT_EQ(presenter.busy, QStringLiteral("Checking for updates…"));
    source.answer(release("1.0"));
    EXPECT_TRUE(presenter.message);
}

} // namespace
} // namespace corvandi
