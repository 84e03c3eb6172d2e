#include "store_fixture.h"

namespace corvandi {
namespace {

using ::testing::ElementsAre;
using testing::FileOperation;
using ::testing::IsEmpty;

const VocabScope global = vocab_scope::Global{};

VocabScope app(const char* bundleID)
{
    return vocab_scope::App{QString::fromUtf8(bundleID)};
}

class StoreVocabTest : public StoreFixture {
protected:
    void add(const char* from, const char* to, const VocabScope& scope)
    {
        store.addVocab(QString::fromUtf8(from), QString::fromUtf8(to), scope);
    }
    /// What the file holds once everything is written.
    [[nodiscard]] VocabBook written()
    {
        queue.runAll();
        return VocabBook::decoded(files.files.at(vocabPath)).value().book;
    }

    Store& store = start();
};

TEST_F(StoreVocabTest, ARuleIsAddedAtTheEndWithItsTextsAsTheyAre)
{
    add("ok", "OK", global);
    add(" e.g. ", "", global);
    add("", "\t", global);
    const auto rules = store.rules(global);
    ASSERT_EQ(rules.size(), 3U);
    EXPECT_EQ(rules[1].from, QStringLiteral(" e.g. "));
    EXPECT_EQ(rules[1].to, QString());
    EXPECT_EQ(rules[2].from, QString());
    EXPECT_EQ(rules[2].to, QStringLiteral("\t"));
    EXPECT_NE(rules[0].id, rules[1].id);
    EXPECT_EQ(rules[0].id.version(), QUuid::Random);
    EXPECT_EQ(written(), store.vocabBook());
}

TEST_F(StoreVocabTest, AnApplicationHasAListOfItsOwn)
{
    store.addApp(QStringLiteral("org.editor"), QStringLiteral("Editor"));
    add("ok", "OK", global);
    add("ok", "okay", app("org.editor"));
    ASSERT_EQ(store.rules(app("org.editor")).size(), 1U);
    EXPECT_EQ(store.rules(app("org.editor"))[0].to, QStringLiteral("okay"));
    EXPECT_EQ(store.rules(global)[0].to, QStringLiteral("OK"));
    EXPECT_EQ(store.vocabBook().apps.at(0).name, QStringLiteral("Editor"));
    EXPECT_EQ(written(), store.vocabBook());
}

TEST_F(StoreVocabTest, AnApplicationWithoutAnEntryHasNoRulesAndNotTheGlobalOnes)
{
    add("ok", "OK", global);
    EXPECT_THAT(store.rules(app("org.editor")), IsEmpty());
    EXPECT_THAT(store.rules(app("")), IsEmpty());
}

TEST_F(StoreVocabTest, ARuleForAnUnknownApplicationIsDroppedButTheBookIsWritten)
{
    add("ok", "OK", app("org.editor"));
    EXPECT_EQ(store.vocabBook(), VocabBook());
    EXPECT_EQ(written(), VocabBook());
}

TEST_F(StoreVocabTest, ARuleIsEditedInPlaceAndKeepsItsIdentifier)
{
    add("a", "1", global);
    add("b", "2", global);
    const QUuid id = store.rules(global)[0].id;
    store.updateVocab(id, QStringLiteral("A"), QStringLiteral("one"), global);
    EXPECT_EQ(store.rules(global)[0], (VocabRule{id, QStringLiteral("A"), QStringLiteral("one")}));
    EXPECT_EQ(store.rules(global)[1].from, QStringLiteral("b"));
    EXPECT_EQ(written(), store.vocabBook());
}

TEST_F(StoreVocabTest, ARuleIsDeletedFromItsScopeOnly)
{
    store.addApp(QStringLiteral("org.editor"), QStringLiteral("Editor"));
    add("a", "1", global);
    const QUuid id = store.rules(global)[0].id;
    store.deleteVocab(id, app("org.editor"));
    EXPECT_EQ(store.rules(global).size(), 1U);
    store.deleteVocab(id, global);
    EXPECT_THAT(store.rules(global), IsEmpty());
    EXPECT_EQ(written(), store.vocabBook());
}

TEST_F(StoreVocabTest, AnApplicationThatIsAddedAgainKeepsItsName)
{
    store.addApp(QStringLiteral("org.editor"), QStringLiteral("Editor"));
    store.addApp(QStringLiteral("org.editor"), QStringLiteral("Other"));
    store.addApp(QStringLiteral("org.Editor"), QStringLiteral("Third"));
    ASSERT_EQ(store.vocabBook().apps.size(), 2U);
    EXPECT_EQ(store.vocabBook().apps[0].name, QStringLiteral("Editor"));
    EXPECT_EQ(store.vocabBook().apps[1].bundleID, QStringLiteral("org.Editor"));
}

TEST_F(StoreVocabTest, RemovingAnApplicationRemovesEveryEntryOfItWithItsRules)
{
    files.files[vocabPath] = R"({"global":[],"apps":[{"bundleID":"a","name":"1","rules":[]},)"
                             R"({"bundleID":"A","name":"2","rules":[]},)"
                             R"({"bundleID":"a","name":"3","rules":[]}]})";
    Store& anew = start();
    anew.removeApp(QStringLiteral("a"));
    ASSERT_EQ(anew.vocabBook().apps.size(), 1U);
    EXPECT_EQ(anew.vocabBook().apps[0].name, QStringLiteral("2"));
    EXPECT_EQ(written(), anew.vocabBook());
}

TEST_F(StoreVocabTest, EveryOperationWritesTheVocabularyOnceEvenIfItChangesNothing)
{
    const QUuid unknown = QUuid::createUuid();
    store.updateVocab(unknown, QString(), QString(), global);
    store.deleteVocab(unknown, global);
    store.addApp(QStringLiteral("a"), QString());
    store.addApp(QStringLiteral("a"), QString());
    store.removeApp(QStringLiteral("b"));
    EXPECT_EQ(queue.size(), 5U);
    queue.runAll();
    EXPECT_THAT(writes(), ElementsAre(vocabPath, vocabPath, vocabPath, vocabPath, vocabPath));
}

TEST_F(StoreVocabTest, AfterAFailedWriteMemoryShowsTheChange)
{
    files.fail(FileOperation::write, QStringLiteral("No space left on device"));
    add("ok", "OK", global);
    queue.runAll();
    EXPECT_EQ(store.rules(global).size(), 1U);
    EXPECT_FALSE(files.files.contains(vocabPath));
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("Corvandi: failed to write vocab.json: No space left on device")));

    files.recover(FileOperation::write);
    store.addApp(QStringLiteral("a"), QString());
    EXPECT_EQ(written(), store.vocabBook());
}

TEST_F(StoreVocabTest, ItIsThereAgainAtTheNextStart)
{
    store.addApp(QStringLiteral("org.editor"), QStringLiteral("Editor"));
    add("ok", "OK", app("org.editor"));
    add("quote", "\"é😀\"\n", global);
    const VocabBook before = store.vocabBook();
    EXPECT_EQ(start().vocabBook(), before);
    EXPECT_THAT(log.lines(), IsEmpty());
}

} // namespace
} // namespace corvandi
