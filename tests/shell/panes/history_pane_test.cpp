#include "shell/panes/history_pane.h"

#include "core/data/store_fixture.h"

namespace corvandi {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HistoryPaneTest : public StoreFixture {
protected:
    HistoryPaneTest()
    {
        QObject::connect(&pane, &HistoryPane::changed, &pane, [this] { ++changes; });
    }
    void dictate(const char* utf8) { store.addHistory(QString::fromUtf8(utf8), Date{}); }
    void show(std::initializer_list<const char*> dictated)
    {
        for (const char* utf8 : dictated)
            dictate(utf8);
        pane.reload();
    }
    [[nodiscard]] std::vector<QString> texts() const
    {
        std::vector<QString> result;
        for (const HistoryEntry& entry : pane.entries())
            result.push_back(entry.text);
        return result;
    }

    Store& store = start();
    std::vector<QString> copied;
    HistoryPane pane{store, [this](const QString& text) { copied.push_back(text); }};
    int changes = 0;
};

TEST_F(HistoryPaneTest, ItStartsEmptyUntilItIsShown)
{
    dictate("one");
    EXPECT_THAT(pane.entries(), IsEmpty());
    EXPECT_FALSE(pane.hasHistory());
    EXPECT_FALSE(pane.showClearConfirm());
    EXPECT_EQ(pane.query(), QString());
    pane.reload();
    EXPECT_THAT(texts(), ElementsAre(QStringLiteral("one")));
    EXPECT_EQ(changes, 1);
}

TEST_F(HistoryPaneTest, WithoutAnyHistoryThereIsNothingToSearchOrToClear)
{
    pane.reload();
    EXPECT_FALSE(pane.hasHistory());
    EXPECT_EQ(pane.emptyTitle(), QStringLiteral("No History"));
    EXPECT_EQ(pane.emptyDescription(), QStringLiteral("Transcriptions you dictate will appear here."));
}

TEST_F(HistoryPaneTest, TheNewestEntryIsTheFirst)
{
    show({"one", "two"});
    EXPECT_THAT(texts(), ElementsAre(QStringLiteral("two"), QStringLiteral("one")));
}

TEST_F(HistoryPaneTest, AChangedQuerySearches)
{
    show({"one", "Two", "three"});
    pane.setQuery(QStringLiteral("t"));
    EXPECT_THAT(texts(), ElementsAre(QStringLiteral("three"), QStringLiteral("Two")));
    pane.setQuery(QStringLiteral("tw"));
    EXPECT_THAT(texts(), ElementsAre(QStringLiteral("Two")));
    pane.setQuery({});
    EXPECT_EQ(texts().size(), 3U);
}

TEST_F(HistoryPaneTest, TheSameQueryIsNotSearchedAgain)
{
    pane.setQuery({});
    EXPECT_EQ(changes, 0);
    pane.setQuery(QStringLiteral("a"));
    pane.setQuery(QStringLiteral("a"));
    EXPECT_EQ(changes, 1);
}

TEST_F(HistoryPaneTest, AQueryThatMatchesNothingIsNamed)
{
    show({"one"});
    pane.setQuery(QStringLiteral("xyz %1"));
    EXPECT_THAT(pane.entries(), IsEmpty());
    EXPECT_TRUE(pane.hasHistory());
    EXPECT_EQ(pane.emptyTitle(), QStringLiteral("No Matches"));
    EXPECT_EQ(pane.emptyDescription(), QStringLiteral("No transcriptions match “xyz %1”."));
}

TEST_F(HistoryPaneTest, AQueryOfSpacesListsEverything)
{
    show({"one", "two"});
    pane.setQuery(QStringLiteral("  "));
    EXPECT_EQ(texts().size(), 2U);
}

TEST_F(HistoryPaneTest, AQueryOfSpacesIsStillAQueryForTheEmptyState)
{
    pane.setQuery(QStringLiteral("  "));
    EXPECT_EQ(pane.emptyTitle(), QStringLiteral("No Matches"));
    EXPECT_EQ(pane.emptyDescription(), QStringLiteral("No transcriptions match “  ”."));
}

TEST_F(HistoryPaneTest, AnEntrysTextIsCopiedAsItIs)
{
    show({" one\n"});
    changes = 0;
    pane.copy(pane.entries()[0]);
    EXPECT_THAT(copied, ElementsAre(QStringLiteral(" one\n")));
    EXPECT_EQ(changes, 0);
}

TEST_F(HistoryPaneTest, OneOfTwoEqualTextsIsDeleted)
{
    show({"same", "same", "other"});
    const QUuid second = pane.entries()[2].id;
    pane.deleteEntry(pane.entries()[1]);
    EXPECT_THAT(texts(), ElementsAre(QStringLiteral("other"), QStringLiteral("same")));
    EXPECT_EQ(pane.entries()[1].id, second);
    EXPECT_EQ(store.history(), pane.entries());
}

TEST_F(HistoryPaneTest, ADeletionKeepsTheQuery)
{
    show({"ab", "abc", "x"});
    pane.setQuery(QStringLiteral("ab"));
    pane.deleteEntry(pane.entries()[0]);
    EXPECT_THAT(texts(), ElementsAre(QStringLiteral("ab")));
}

TEST_F(HistoryPaneTest, DeletingTheLastEntryLeavesNothingToSearchOrToClear)
{
    show({"one"});
    pane.deleteEntry(pane.entries()[0]);
    EXPECT_FALSE(pane.hasHistory());
    EXPECT_THAT(pane.entries(), IsEmpty());
}

TEST_F(HistoryPaneTest, ClearingIsAskedForFirst)
{
    show({"one"});
    pane.askToClear();
    EXPECT_TRUE(pane.showClearConfirm());
    EXPECT_EQ(store.history().size(), 1U);
}

TEST_F(HistoryPaneTest, CancellingLeavesTheHistoryUntouched)
{
    show({"one"});
    queue.runAll();
    const std::size_t before = writes().size();
    pane.askToClear();
    pane.cancel();
    queue.runAll();
    EXPECT_FALSE(pane.showClearConfirm());
    EXPECT_EQ(store.history().size(), 1U);
    EXPECT_EQ(writes().size(), before);
}

TEST_F(HistoryPaneTest, ClearingRemovesEverythingWhateverTheQueryShows)
{
    show({"one", "two"});
    pane.setQuery(QStringLiteral("one"));
    pane.askToClear();
    pane.clear();
    EXPECT_FALSE(pane.showClearConfirm());
    EXPECT_FALSE(pane.hasHistory());
    EXPECT_THAT(pane.entries(), IsEmpty());
    EXPECT_THAT(store.history(), IsEmpty());
}

TEST_F(HistoryPaneTest, ADictationIsSeenAtTheNextReload)
{
    show({"one"});
    dictate("two");
    EXPECT_EQ(texts().size(), 1U);
    pane.reload();
    EXPECT_EQ(texts().size(), 2U);
}

} // namespace
} // namespace corvandi
