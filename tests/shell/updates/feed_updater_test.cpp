#include "shell/updates/update_texts.h"
#include "shell/updates/updater_fixture.h"

namespace corvandi {
namespace {

using namespace testing;
using Kind = UpdateFailure::Kind;

class FeedUpdaterTest : public UpdaterTest {};

TEST_F(FeedUpdaterTest, CanCheckOnceItIsStarted)
{
    FeedUpdater fresh(UpdaterPlatform{queue, clock, defaults, log, source, presenter}, program);
    EXPECT_FALSE(fresh.canCheckForUpdates());
    fresh.start();
    EXPECT_TRUE(fresh.canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, StartingAsksNobodyForAnything)
{
    updater();
    queue.advance(std::chrono::hours(48));

    EXPECT_EQ(source.feedRequests, 0);
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

    EXPECT_EQ(source.feedRequests, 0);
    EXPECT_EQ(queue.timerCount(), 0U);
    EXPECT_TRUE(presenter.showsNothing());
}

TEST_F(FeedUpdaterTest, ACheckIsShownAndMakesAnotherOneImpossible)
{
    updater().checkForUpdates();

    EXPECT_TRUE(source.isFetchingFeed());
    EXPECT_EQ(presenter.busy, QStringLiteral("Checking for updates…"));
    EXPECT_FALSE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, ASecondCheckOnlyShowsTheFirst)
{
    updater().checkForUpdates();
    updater().checkForUpdates();

    EXPECT_EQ(source.feedRequests, 1);
    EXPECT_EQ(presenter.timesBroughtToFront, 1);

    source.answerFeed(release("1.2"));
    updater().checkForUpdates();
    presenter.answer(UpdateAnswer::accept);
    updater().checkForUpdates();
    source.completePackage();
    presenter.answer(UpdateAnswer::accept);
    updater().checkForUpdates();

    EXPECT_EQ(source.feedRequests, 1);
    EXPECT_EQ(presenter.timesBroughtToFront, 4);
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
    EXPECT_EQ(source.packageRequests, 0);
}

TEST_F(FeedUpdaterTest, ANewerVersionIsAnnouncedAndNothingIsDownloadedUnasked)
{
    Release found = release("1.2");
    found.notes = QStringLiteral("Faster.");
    checkAndFind(found);

    ASSERT_TRUE(presenter.question);
    EXPECT_EQ(presenter.question->message.text, QStringLiteral("Corvandi 1.2 is available."));
    EXPECT_TRUE(presenter.question->message.details.contains(QStringLiteral("Faster.")));
    EXPECT_EQ(presenter.question->attention, Attention::take);
    EXPECT_EQ(source.packageRequests, 0);
    EXPECT_FALSE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, NoEndsItThere)
{
    checkAndFind(release("1.2"));
    presenter.answer(UpdateAnswer::decline);

    EXPECT_EQ(source.packageRequests, 0);
    EXPECT_TRUE(presenter.showsNothing());
    EXPECT_TRUE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, YesDownloadsWithProgress)
{
    checkAndFind(release("1.2"));
    presenter.answer(UpdateAnswer::accept);
    source.advance({500, 1000});

    EXPECT_EQ(source.requested, QStringLiteral("1.2"));
    EXPECT_EQ(presenter.busy, QStringLiteral("Downloading Corvandi 1.2…"));
    ASSERT_EQ(presenter.progresses.size(), 1U);
    EXPECT_EQ(presenter.progresses.front().received, 500);
}

TEST_F(FeedUpdaterTest, AVerifiedDownloadIsOfferedButNotOpened)
{
    download();

    ASSERT_TRUE(presenter.question);
    EXPECT_EQ(presenter.question->message.text, QStringLiteral("Corvandi 1.2 is ready to install."));
    EXPECT_EQ(source.openings, 0);
    EXPECT_FALSE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, OnlyYesOpensTheInstaller)
{
    download();
    presenter.answer(UpdateAnswer::accept);

    EXPECT_EQ(source.openings, 1);
    EXPECT_FALSE(presenter.busy.isEmpty());
    EXPECT_FALSE(presenter.canCancel());

    source.answerOpening(std::nullopt);
    EXPECT_TRUE(presenter.showsNothing());
    EXPECT_TRUE(updater().canCheckForUpdates());
    EXPECT_TRUE(log.contains(QStringLiteral("update 1.2 was given to the installer")));
}

TEST_F(FeedUpdaterTest, NoThrowsTheDownloadAway)
{
    download();
    presenter.answer(UpdateAnswer::decline);

    EXPECT_EQ(source.openings, 0);
    EXPECT_EQ(source.packagesAlive, 0);
    EXPECT_TRUE(presenter.showsNothing());
    EXPECT_TRUE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, CheckingCanBeCancelled)
{
    updater().checkForUpdates();
    presenter.cancel();

    EXPECT_FALSE(source.isFetchingFeed());
    EXPECT_TRUE(presenter.showsNothing());
    EXPECT_TRUE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, DownloadingCanBeCancelled)
{
    checkAndFind(release("1.2"));
    presenter.answer(UpdateAnswer::accept);
    presenter.cancel();

    EXPECT_FALSE(source.isFetchingPackage());
    EXPECT_TRUE(presenter.showsNothing());
    EXPECT_TRUE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, AFailedCheckSaysWhyAndCanBeRepeated)
{
    for (const Kind kind : {Kind::unreachable, Kind::timedOut, Kind::insecure, Kind::refused,
                            Kind::unreadable, Kind::untrusted}) {
        const UpdateFailure failure{kind, QStringLiteral("some detail")};
        updater().checkForUpdates();
        source.answerFeed(failure);

        ASSERT_TRUE(presenter.message);
        EXPECT_EQ(presenter.message->details, update_texts::failed(failure).details);
        EXPECT_TRUE(log.contains(QStringLiteral("some detail")));
        EXPECT_TRUE(updater().canCheckForUpdates());
    }
    EXPECT_EQ(source.packageRequests, 0);
}

TEST_F(FeedUpdaterTest, AFailedDownloadIsNotOffered)
{
    for (const Kind kind : {Kind::incomplete, Kind::tampered, Kind::notStored, Kind::unreachable}) {
        checkAndFind(release("1.2"));
        presenter.answer(UpdateAnswer::accept);
        source.failPackage({kind, QStringLiteral("some detail")});

        EXPECT_TRUE(presenter.message);
        EXPECT_FALSE(presenter.question);
        EXPECT_TRUE(updater().canCheckForUpdates());
    }
    EXPECT_EQ(source.openings, 0);
}

TEST_F(FeedUpdaterTest, AnInstallerThatDoesNotOpenIsReported)
{
    download();
    presenter.answer(UpdateAnswer::accept);
    source.answerOpening(UpdateFailure{Kind::notOpened, QStringLiteral("/somewhere/corvandi.deb")});

    ASSERT_TRUE(presenter.message);
    EXPECT_TRUE(presenter.message->details.contains(QStringLiteral("/somewhere/corvandi.deb")));
    EXPECT_TRUE(updater().canCheckForUpdates());
}

TEST_F(FeedUpdaterTest, AReleaseThatNeedsANewerSystemIsOnlyMentioned)
{
    Release found = release("1.2");
    found.minimumSystem.emplace(QStringLiteral("debian"), version("13"));
    checkAndFind(found);

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
        FeedUpdater other(
            UpdaterPlatform{queue, clock, defaults, log, source, presenter},
            {version("1.0"), QString::fromUtf8(running.system), QString::fromUtf8(running.systemVersion)});
        other.start();
        Release found = release("1.2");
        found.minimumSystem.emplace(QStringLiteral("debian"), version("12"));
        other.checkForUpdates();
        source.answerFeed(found);
        EXPECT_TRUE(presenter.question) << running.system << running.systemVersion;
    }
}

TEST_F(FeedUpdaterTest, TheEndOfTheProgramCancelsAndDismisses)
{
    updater().checkForUpdates();
    endProgram();
    EXPECT_FALSE(source.isFetchingFeed());
    EXPECT_TRUE(presenter.showsNothing());

    checkAndFind(release("1.2"));
    presenter.answer(UpdateAnswer::accept);
    endProgram();
    EXPECT_FALSE(source.isFetchingPackage());
    EXPECT_TRUE(presenter.showsNothing());

    download();
    endProgram();
    EXPECT_EQ(source.packagesAlive, 0);
    EXPECT_TRUE(presenter.showsNothing());
}

TEST_F(FeedUpdaterTest, ObserversAreToldThePresentValueAndEachNewOne)
{
    std::vector<bool> told;
    auto registration = updater().observeCanCheckForUpdates([&](bool can) { told.push_back(can); });
    checkAndFind(release("1.2"));
    presenter.answer(UpdateAnswer::decline);
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
