#include "shell/updates/update_texts.h"
#include "shell/updates/updater_fixture.h"

namespace corvandi {
namespace {

using namespace testing;
using Kind = UpdateFailure::Kind;

class FeedUpdaterTest : public UpdaterTest {};

TEST_F(FeedUpdaterTest, CanCheckOnceItIsStarted)
{
    FeedUpdater fresh(platform, program);
    EXPECT_FALSE(fresh.canCheckForUpdates());
    fresh.start();
    EXPECT_TRUE(fresh.canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, StartingAsksNobodyForAnything)
{
    updater();
    queue.advance(std::chrono::hours(48));

    EXPECT_EQ(source.requests, 0);
    EXPECT_TRUE(presenter.showsNothing());
    EXPECT_TRUE(defaults.writes.empty());
}

TEST_F(FeedUpdaterTest, WithoutAPlaceToLookItNeverChecks)
{
    source.configured = false;
    defaults.persistent[FeedUpdater::automaticChecksKey] = true;

    EXPECT_FALSE(updater().canCheckForUpdates());
    updater().checkForUpdates();
    queue.advance(std::chrono::hours(48));

    EXPECT_EQ(source.requests, 0);
    EXPECT_EQ(queue.timerCount(), 0U);
    EXPECT_TRUE(presenter.showsNothing());
}

TEST_F(FeedUpdaterTest, ACheckIsShownAndMakesAnotherOneImpossible)
{
    updater().checkForUpdates();

    EXPECT_TRUE(source.isFetching());
    EXPECT_EQ(presenter.busy, QStringLiteral("Checking for updates…"));
    EXPECT_FALSE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, ASecondCheckOnlyShowsTheFirst)
{
    updater().checkForUpdates();
    updater().checkForUpdates();

    EXPECT_EQ(source.requests, 1);
    EXPECT_EQ(presenter.timesBroughtToFront, 1);

    source.answer(release("1.2"));
    updater().checkForUpdates();

    EXPECT_EQ(source.requests, 1);
    EXPECT_EQ(presenter.timesBroughtToFront, 2);
}

TEST_F(FeedUpdaterTest, TheSameVersionIsUpToDate)
{
    checkAndFind(release("1.0.0"));

    ASSERT_TRUE(presenter.message);
    EXPECT_EQ(presenter.message->text, QStringLiteral("You're up to date."));
    EXPECT_TRUE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, AnOlderVersionIsNeverOffered)
{
    checkAndFind(release("0.9"));

    ASSERT_TRUE(presenter.message);
    EXPECT_EQ(presenter.message->text, QStringLiteral("You're up to date."));
    EXPECT_TRUE(opened.empty());
}

TEST_F(FeedUpdaterTest, ANewerVersionIsAnnouncedAndNothingIsOpenedUnasked)
{
    checkAndFind(release("1.2", R"("notes": "Faster.")"));

    ASSERT_TRUE(presenter.question);
    EXPECT_EQ(presenter.question->notice.text, QStringLiteral("Corvandi 1.2 is available."));
    EXPECT_TRUE(presenter.question->notice.details.contains(QStringLiteral("Faster.")));
    EXPECT_EQ(presenter.question->attention, Attention::take);
    EXPECT_TRUE(opened.empty());
    EXPECT_FALSE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, NoEndsItThere)
{
    checkAndFind(release("1.2"));
    presenter.answer(Answer::decline);

    EXPECT_TRUE(opened.empty());
    EXPECT_TRUE(presenter.showsNothing());
    EXPECT_TRUE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, YesOpensThePageOfTheRelease)
{
    checkAndFind(release("1.2"));
    presenter.answer(Answer::accept);

    EXPECT_EQ(opened, std::vector{QUrl(QStringLiteral("https://updates.example/1.2"))});
    EXPECT_TRUE(presenter.showsNothing());
    EXPECT_TRUE(updater().canCheckForUpdates());
    EXPECT_TRUE(log.contains(QStringLiteral("the page of update 1.2 was opened")));
}

TEST_F(FeedUpdaterTest, APageThatCannotBeOpenedIsNamed)
{
    hasBrowser = false;
    checkAndFind(release("1.2"));
    presenter.answer(Answer::accept);

    ASSERT_TRUE(presenter.message);
    EXPECT_TRUE(presenter.message->details.contains(QStringLiteral("https://updates.example/1.2")));
    EXPECT_TRUE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, CheckingCanBeCancelled)
{
    updater().checkForUpdates();
    presenter.cancel();

    EXPECT_FALSE(source.isFetching());
    EXPECT_TRUE(presenter.showsNothing());
    EXPECT_TRUE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, AFailedCheckSaysWhyAndCanBeRepeated)
{
    for (const Kind kind : {Kind::unreachable, Kind::timedOut, Kind::insecure, Kind::refused,
                            Kind::unreadable, Kind::untrusted, Kind::incomplete}) {
        const UpdateFailure failure{kind, QStringLiteral("some detail")};
        updater().checkForUpdates();
        source.answer(failure);

        ASSERT_TRUE(presenter.message);
        EXPECT_EQ(presenter.message->details, update_texts::failed(failure).details);
        EXPECT_TRUE(log.contains(QStringLiteral("some detail")));
        EXPECT_TRUE(updater().canCheckForUpdates());
    }
    EXPECT_TRUE(opened.empty());
}

TEST_F(FeedUpdaterTest, AManifestThatCannotBeReadIsAFailure)
{
    checkAndFind("{}");

    ASSERT_TRUE(presenter.message);
    EXPECT_EQ(presenter.message->details, update_texts::failed({Kind::unreadable, {}}).details);
    EXPECT_TRUE(log.contains(QStringLiteral("\"version\"")));
    EXPECT_TRUE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, AReleaseThatNeedsANewerSystemIsOnlyMentioned)
{
    checkAndFind(release("1.2", R"("minimumSystem": {"debian": "13"})"));

    EXPECT_FALSE(presenter.question);
    ASSERT_TRUE(presenter.message);
    EXPECT_EQ(presenter.message->details, QStringLiteral("It needs Debian 13 or newer; this is Debian 12."));
    EXPECT_TRUE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, ASystemThatIsNewEnoughOrUnknownIsNoObstacle)
{
    struct Case {
        const char* system;
        const char* systemVersion;
    };
    for (const Case& running : {Case{"debian", "12"}, Case{"debian", "12.4"}, Case{"debian", "13"},
                                Case{"fedora", "1"}, Case{"debian", ""}, Case{"debian", "unknown"}}) {
        FeedUpdater other(platform, {version("1.0"), QString::fromUtf8(running.system),
                                     QString::fromUtf8(running.systemVersion)});
        other.start();
        other.checkForUpdates();
        source.answer(release("1.2", R"("minimumSystem": {"debian": "12"})"));
        EXPECT_TRUE(presenter.question) << running.system << running.systemVersion;
    }
}

TEST_F(FeedUpdaterTest, TheEndOfTheProgramCancelsAndDismisses)
{
    updater().checkForUpdates();
    endProgram();
    EXPECT_FALSE(source.isFetching());
    EXPECT_TRUE(presenter.showsNothing());

    checkAndFind(release("1.2"));
    endProgram();
    EXPECT_TRUE(presenter.showsNothing());
}

TEST_F(FeedUpdaterTest, ObserversAreToldThePresentValueAndEachNewOne)
{
    std::vector<bool> told;
    auto registration = updater().observeCanCheckForUpdates([&](bool can) { told.push_back(can); });
    checkAndFind(release("1.2"));
    presenter.answer(Answer::decline);
    EXPECT_EQ(told, (std::vector<bool>{true, false, true}));

    registration.reset();
    updater().checkForUpdates();
    EXPECT_EQ(told.size(), 3U);
}

TEST_F(FeedUpdaterTest, AnObserverMayGoWhileItIsTold)
{
    int calls = 0;
    std::unique_ptr<Registration> second;
    const auto first = updater().observeCanCheckForUpdates([&](bool) { second.reset(); });
    second = updater().observeCanCheckForUpdates([&](bool) { ++calls; });
    updater().checkForUpdates();
    EXPECT_EQ(calls, 1);
}

TEST_F(FeedUpdaterTest, ARegistrationMayOutliveTheUpdater)
{
    const auto registration = updater().observeCanCheckForUpdates([](bool) {});
    endProgram();
}

} // namespace
} // namespace corvandi
