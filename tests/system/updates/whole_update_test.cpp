#include "shell/updates/fake_update_presenter.h"
#include "shell/updates/feed_updater.h"
#include "support/fake_user_defaults.h"
#include "update_fixture.h"

#include <QFile>
#include <QProcess>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using namespace testing;

class SystemTime : public WallClock {
public:
    [[nodiscard]] Date now() const override { return Date::fromTimePoint(std::chrono::system_clock::now()); }
};

/// The updater as the program has it, up to its face.
class WholeUpdateTest : public UpdateTest {
protected:
    FeedUpdater& updater()
    {
        if (!updater_) {
            updater_.emplace(UpdaterPlatform{queue, clock_, defaults, log, source(), presenter},
                             RunningProgram{Version::parse(running).value(), QString(), QString()});
            updater_->start();
        }
        return *updater_;
    }
    [[nodiscard]] bool waitForQuestion()
    {
        return waitUntil([this] { return presenter.question.has_value(); });
    }
    [[nodiscard]] bool waitForMessage()
    {
        return waitUntil([this] { return presenter.message.has_value(); });
    }

    FakeUpdatePresenter presenter;
    FakeUserDefaults defaults;
    QString running = QStringLiteral("1.0");

private:
    SystemTime clock_;
    std::optional<FeedUpdater> updater_;
};

TEST_F(WholeUpdateTest, GoesFromTheCheckToTheQuestionWhetherToInstall)
{
    serveRelease();
    updater().checkForUpdates();
    ASSERT_TRUE(waitForQuestion());
    EXPECT_EQ(presenter.question->message.text, QStringLiteral("Corvandi 1.2.0 is available."));
    EXPECT_EQ(server.requests().size(), 1U);

    presenter.answer(UpdateAnswer::accept);
    ASSERT_TRUE(waitForQuestion());
    EXPECT_EQ(presenter.question->message.text, QStringLiteral("Corvandi 1.2.0 is ready to install."));
    EXPECT_EQ(files().size(), 1);

    presenter.answer(UpdateAnswer::decline);
    EXPECT_TRUE(waitUntil([this] { return files().isEmpty(); }));
    EXPECT_TRUE(updater().canCheckForUpdates());
}

TEST_F(WholeUpdateTest, AnOldReleaseWithAGoodSignatureIsNotOffered)
{
    running = QStringLiteral("1.2.1");
    serveRelease();
    updater().checkForUpdates();
    ASSERT_TRUE(waitForMessage());
    EXPECT_EQ(presenter.message->text, QStringLiteral("You're up to date."));
}

TEST_F(WholeUpdateTest, ATamperedPackageIsNeverOffered)
{
    serveRelease();
    server.serve(QStringLiteral("/corvandi.deb"), QByteArray(package.size(), 'x'));
    updater().checkForUpdates();
    ASSERT_TRUE(waitForQuestion());
    presenter.answer(UpdateAnswer::accept);
    ASSERT_TRUE(waitForMessage());
    EXPECT_TRUE(presenter.message->details.startsWith(QStringLiteral("The download isn't what the makers")));
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(WholeUpdateTest, TwoChecksAtOnceAreOne)
{
    serveRelease();
    updater().checkForUpdates();
    updater().checkForUpdates();
    ASSERT_TRUE(waitForQuestion());
    EXPECT_EQ(server.connectionsEver(), 1);
}

TEST_F(WholeUpdateTest, NothingIsSentBeforeAPersonAsks)
{
    serveRelease();
    updater();
    runFor(200ms);
    EXPECT_EQ(server.connectionsEver(), 0);
}

TEST_F(WholeUpdateTest, ThereIsAnotherTryAfterTheNetworkIsBack)
{
    updater().checkForUpdates();
    ASSERT_TRUE(waitForMessage());
    serveRelease();
    updater().checkForUpdates();
    EXPECT_TRUE(waitForQuestion());
}

TEST_F(WholeUpdateTest, AFeedMadeWithTheMakersToolIsAccepted)
{
    const QString keyFile = home.filePath(QStringLiteral("key.pem"));
    const QString packageFile = home.filePath(QStringLiteral("corvandi.deb"));
    const QString notes = home.filePath(QStringLiteral("notes"));
    QFile file(packageFile);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(package) == package.size());
    file.close();
    QFile notesFile(notes);
    ASSERT_TRUE(notesFile.open(QIODevice::WriteOnly) && notesFile.write("\"Faster\" and\nschöner.\n") > 0);
    notesFile.close();

    const auto run = [](const QStringList& arguments) {
        QProcess tool;
        tool.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        tool.start(QStringLiteral(SIGN_UPDATE), arguments);
        EXPECT_TRUE(tool.waitForFinished() && tool.exitCode() == 0);
        return tool.readAllStandardOutput();
    };
    key = run({QStringLiteral("new-key"), keyFile}).trimmed();
    EXPECT_EQ(run({QStringLiteral("public-key"), keyFile}).trimmed(), key);
    EXPECT_EQ(QFile::permissions(keyFile) & QFile::Permissions(0x00FF), QFile::Permissions());
    server.serve(
        QStringLiteral("/feed"),
        run({QStringLiteral("feed"), keyFile, QStringLiteral("--version"), QStringLiteral("1.2.0"),
             QStringLiteral("--package"), packageFile, QStringLiteral("--url"), packageUrl().toString(),
             QStringLiteral("--notes"), notes, QStringLiteral("--minimum"), QStringLiteral("debian=12")}));
    server.serve(QStringLiteral("/corvandi.deb"), package);

    const UpdateResult<Release> found = fetchFeed();
    ASSERT_TRUE(std::holds_alternative<Release>(found))
        << std::get<UpdateFailure>(found).detail.toStdString();
    EXPECT_EQ(std::get<Release>(found).notes, QStringLiteral("\"Faster\" and\nschöner."));
    EXPECT_EQ(std::get<Release>(found).minimumSystem.size(), 1U);
    EXPECT_TRUE(
        std::holds_alternative<std::unique_ptr<UpdatePackage>>(fetchPackage(std::get<Release>(found))));
}

} // namespace
} // namespace corvandi
