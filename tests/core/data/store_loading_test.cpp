#include "store_fixture.h"

namespace corvandi {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using testing::FakeFileSystem;
using testing::FileOperation;
using ::testing::IsEmpty;
using ::testing::Not;

const QByteArray goodHistory = R"([{"id":"0123ABCD-4567-89EF-ABCD-EF0123456789","text":"a","date":0}])";
const QByteArray goodVocab =
    R"({"global":[{"id":"0123ABCD-4567-89EF-ABCD-EF0123456789","from":"a","to":"b"}],"apps":[]})";
const QByteArray earlierVocab = R"([{"id":"0123ABCD-4567-89EF-ABCD-EF0123456789","from":"a","to":"b"}])";

class StoreLoadingTest : public StoreFixture {};

TEST_F(StoreLoadingTest, AFirstStartMakesTheFolderAndNoFile)
{
    const Store& store = start();
    EXPECT_THAT(store.history(), IsEmpty());
    EXPECT_EQ(store.vocabBook(), VocabBook());
    EXPECT_THAT(files.folders, ElementsAre(directory));
    queue.runAll();
    EXPECT_TRUE(files.files.empty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(StoreLoadingTest, TheFolderComesFirstThenTheHistoryThenTheVocabulary)
{
    files.files = {{historyPath, goodHistory}, {vocabPath, goodVocab}};
    const Store& store = start();
    EXPECT_THAT(files.calls, ElementsAre(FakeFileSystem::Call{FileOperation::createDirectory, directory},
                                         FakeFileSystem::Call{FileOperation::exists, historyPath},
                                         FakeFileSystem::Call{FileOperation::read, historyPath},
                                         FakeFileSystem::Call{FileOperation::exists, vocabPath},
                                         FakeFileSystem::Call{FileOperation::read, vocabPath}));
    EXPECT_EQ(store.history().size(), 1U);
    EXPECT_EQ(store.vocabBook().global.size(), 1U);
    EXPECT_EQ(queue.size(), 0U);
}

TEST_F(StoreLoadingTest, AFolderThatCanNotBeMadeIsLoggedAndEverythingElseIsTried)
{
    files.files[historyPath] = goodHistory;
    files.fail(FileOperation::createDirectory, QStringLiteral("Permission denied"));
    const Store& store = start();
    EXPECT_EQ(store.history().size(), 1U);
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("Corvandi: failed to create store directory: Permission denied")));
}

TEST_F(StoreLoadingTest, AnUnreadableHistoryIsSetAsideAndTheNextDictationWritesAFreshOne)
{
    files.files[historyPath] = "[{\"secret\"";
    Store& store = start();
    EXPECT_THAT(store.history(), IsEmpty());
    EXPECT_FALSE(files.files.contains(historyPath));
    EXPECT_EQ(files.files.at(historyAside), "[{\"secret\"");
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral("Corvandi: failed to load history.json: not valid "
                                                        "JSON: unexpected content at byte 11")));

    store.addHistory(QStringLiteral("a"), {0});
    queue.runAll();
    EXPECT_TRUE(files.files.at(historyPath).startsWith("[{\"id\":"));
    EXPECT_EQ(files.files.at(historyAside), "[{\"secret\"");
}

TEST_F(StoreLoadingTest, AnOlderFileThatWasSetAsideGivesWay)
{
    files.files = {{historyPath, "newer"}, {historyAside, "older"}, {vocabAside, "untouched"}};
    (void)start();
    EXPECT_EQ(files.files.at(historyAside), "newer");
    EXPECT_EQ(files.files.at(vocabAside), "untouched");
    EXPECT_THAT(files.pathsOf(FileOperation::remove), ElementsAre(historyAside));
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(StoreLoadingTest, AHistoryThatCanNotBeReadIsSetAsideToo)
{
    files.files[historyPath] = goodHistory;
    files.fail(FileOperation::read, QStringLiteral("Input/output error"));
    const Store& store = start();
    EXPECT_THAT(store.history(), IsEmpty());
    EXPECT_EQ(files.files.at(historyAside), goodHistory);
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("Corvandi: failed to load history.json: Input/output error")));
}

TEST_F(StoreLoadingTest, AFileThatCanNotBeMovedAsideStays)
{
    files.files[historyPath] = "broken";
    files.fail(FileOperation::move, QStringLiteral("Read-only file system"));
    const Store& store = start();
    EXPECT_THAT(store.history(), IsEmpty());
    EXPECT_EQ(files.files.at(historyPath), "broken");
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral("Corvandi: failed to load history.json: not valid "
                                                        "JSON: unexpected content at byte 1"),
                                         QStringLiteral("Corvandi: failed to move history.json aside: "
                                                        "Read-only file system")));
}

TEST_F(StoreLoadingTest, AnOlderFileThatCanNotBeRemovedKeepsTheNewOneInPlace)
{
    files.files = {{vocabPath, "broken"}, {vocabAside, "older"}};
    files.fail(FileOperation::remove, QStringLiteral("Directory not empty"));
    (void)start();
    EXPECT_EQ(files.files.at(vocabPath), "broken");
    EXPECT_EQ(files.files.at(vocabAside), "older");
    EXPECT_THAT(files.pathsOf(FileOperation::move), IsEmpty());
    EXPECT_THAT(
        log.lines(),
        ElementsAre(QStringLiteral("Corvandi: failed to load vocab.json: the data is corrupt"),
                    QStringLiteral("Corvandi: failed to move vocab.json aside: Directory not empty")));
}

TEST_F(StoreLoadingTest, ADiskThatDoesNotEvenSayWhatIsThereIsLoggedAndNothingStops)
{
    files.fail(FileOperation::exists, QStringLiteral("Permission denied"));
    const Store& store = start();
    EXPECT_THAT(store.history(), IsEmpty());
    EXPECT_EQ(log.lines().size(), 4U);
    EXPECT_TRUE(log.contains(QStringLiteral("Corvandi: failed to load history.json: Permission denied")));
    EXPECT_TRUE(log.contains(QStringLiteral("Corvandi: failed to move vocab.json aside: Permission denied")));
}

TEST_F(StoreLoadingTest, AnUnreadableVocabularyIsCorruptData)
{
    for (const char* bytes : {"", "secret", "{}", "[{}]", "{\"global\":[]}", "null"}) {
        files.files = {{vocabPath, bytes}, {historyPath, goodHistory}};
        const Store& store = start();
        EXPECT_EQ(store.vocabBook(), VocabBook()) << bytes;
        EXPECT_EQ(store.history().size(), 1U) << bytes;
        EXPECT_EQ(files.files.at(vocabAside), bytes);
        EXPECT_EQ(log.lines().back(),
                  QStringLiteral("Corvandi: failed to load vocab.json: the data is corrupt"));
    }
    EXPECT_FALSE(log.contains(QStringLiteral("secret")));
}

TEST_F(StoreLoadingTest, AVocabularyOfTheEarlierFormIsWrittenAnewAtOnce)
{
    files.files[vocabPath] = earlierVocab;
    const Store& store = start();
    EXPECT_EQ(store.vocabBook().global.size(), 1U);
    EXPECT_EQ(queue.size(), 1U);
    queue.runAll();
    EXPECT_EQ(files.files.at(vocabPath), goodVocab);
    EXPECT_FALSE(files.files.contains(vocabAside));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(StoreLoadingTest, AMigrationThatCanNotBeWrittenLeavesTheVocabularyUsable)
{
    files.files[vocabPath] = earlierVocab;
    files.fail(FileOperation::write, QStringLiteral("Read-only file system"));
    const Store& store = start();
    queue.runAll();
    EXPECT_EQ(store.vocabBook().global.size(), 1U);
    EXPECT_EQ(files.files.at(vocabPath), earlierVocab);
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("Corvandi: failed to write vocab.json: Read-only file system")));
}

TEST_F(StoreLoadingTest, AVocabularyOfTheCurrentFormIsNotWrittenAnew)
{
    files.files[vocabPath] = goodVocab;
    (void)start();
    EXPECT_EQ(queue.size(), 0U);
}

} // namespace
} // namespace corvandi
