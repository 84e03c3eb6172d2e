#include "shell/updates/fake_notice_presenter.h"
#include "shell/updates/feed_updater.h"
#include "shell/updates/update_texts.h"
#include "support/fake_user_defaults.h"
#include "update_fixture.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

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
            updater_.emplace(UpdaterPlatform{queue, clock_, defaults, log, source(), presenter,
                                             [this](const QUrl& page) {
                                                 opened.push_back(page);
                                                 return true;
                                             }},
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

    FakeNoticePresenter presenter;
    std::vector<QUrl> opened;
    FakeUserDefaults defaults;
    QString running = QStringLiteral("1.0");

private:
    SystemTime clock_;
    std::optional<FeedUpdater> updater_;
};

TEST_F(WholeUpdateTest, GoesFromTheCheckToThePage)
{
    serveRelease();
    updater().checkForUpdates();
    ASSERT_TRUE(waitForQuestion());
    EXPECT_EQ(presenter.question->notice.text, QStringLiteral("Corvandi 1.2.0 is available."));

    presenter.answer(Answer::accept);
    EXPECT_EQ(opened, std::vector{QUrl(QStringLiteral("https://updates.example/1.2.0"))});
    EXPECT_TRUE(updater().canCheckForUpdates());
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(WholeUpdateTest, AnOldReleaseWithAGoodSignatureIsNotOffered)
{
    running = QStringLiteral("1.2.1");
    serveRelease();
    updater().checkForUpdates();
    ASSERT_TRUE(waitForMessage());
    EXPECT_EQ(presenter.message->text, QStringLiteral("You're up to date."));
}

TEST_F(WholeUpdateTest, ASignedFeedThatIsNoManifestIsUnreadable)
{
    for (const char* text : {"", "no JSON", "[]", "{}", "{\"version\": \"1.2\"}", "{\"version\": [[[["}) {
        server.serve(QStringLiteral("/feed"), signer.feed(text));
        updater().checkForUpdates();
        ASSERT_TRUE(waitForMessage());
        EXPECT_EQ(presenter.message->details,
                  update_texts::failed({UpdateFailure::Kind::unreadable, {}}).details)
            << text;
    }
}

TEST_F(WholeUpdateTest, AMissingMemberIsNamedInTheLog)
{
    server.serve(QStringLiteral("/feed"), signer.feed(QByteArray(manifest).replace("page", "pages")));
    updater().checkForUpdates();
    ASSERT_TRUE(waitForMessage());
    EXPECT_TRUE(log.contains(QStringLiteral("\"page\"")));
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
    const QTemporaryDir home;
    const QString keyFile = home.filePath(QStringLiteral("key.pem"));
    const QString notes = home.filePath(QStringLiteral("notes"));
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
             QStringLiteral("--page"), QStringLiteral("https://updates.example/1.2.0"),
             QStringLiteral("--notes"), notes, QStringLiteral("--minimum"), QStringLiteral("debian=12")}));

    const UpdateResult<QByteArray> signedText = fetchFeed();
    ASSERT_TRUE(std::holds_alternative<QByteArray>(signedText));
    const UpdateResult<Release> found = readManifest(std::get<QByteArray>(signedText));
    ASSERT_TRUE(std::holds_alternative<Release>(found));
    EXPECT_EQ(std::get<Release>(found).page, QUrl(QStringLiteral("https://updates.example/1.2.0")));
    EXPECT_EQ(std::get<Release>(found).notes, QStringLiteral("\"Faster\" and\nschöner."));
    EXPECT_EQ(std::get<Release>(found).minimumSystem.size(), 1U);
}

} // namespace
} // namespace corvandi
