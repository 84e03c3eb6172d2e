#include "settings_fixture.h"

#include "core/data/store_fixture.h"
#include "views/settings/history_pane_view.h"

#include <QScrollBar>

#include <algorithm>

namespace corvandi {
namespace {

using testing::buttonOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::isShown;
using testing::named;
using testing::rowsOf;
using testing::shows;
using testing::waitUntil;

const QString clearHistory = QStringLiteral("Clear History");
const QString searchHistory = QStringLiteral("Search History");

class HistoryViewTest : public StoreFixture {
protected:
    HistoryViewTest() { view.resize(600, 500); }
    void dictate(const char* text) { store.addHistory(QString::fromUtf8(text), Date{}); }
    [[nodiscard]] std::vector<QString> visibleTexts() const
    {
        std::vector<QString> texts;
        for (const auto* row : rowsOf<HistoryRowView>(view)) {
            if (row->isVisible())
                texts.push_back(row->entry().text);
        }
        return texts;
    }
    [[nodiscard]] bool isVisible(const QString& name) const { return named(view, name).isVisible(); }
    void pressIn(std::size_t row, const char* button)
    {
        QTest::mouseClick(&buttonOf(*rowsOf<HistoryRowView>(view).at(row), button), Qt::LeftButton);
    }
    [[nodiscard]] kit::MessageDialog* confirmation() const { return view.findChild<kit::MessageDialog*>(); }
    /// The dialog goes with the event loop's next turn.
    [[nodiscard]] bool confirmationIsGone() const
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return confirmation() == nullptr;
    }
    void answer(const QString& button)
    {
        QTest::mouseClick(&named<QAbstractButton>(*confirmation(), button), Qt::LeftButton);
    }

    Store& store = start();
    std::vector<QString> copied;
    HistoryPane pane{store, [this](const QString& text) { copied.push_back(text); }};
    HistoryPaneView view{pane};
};

TEST_F(HistoryViewTest, WithoutHistoryOnlyTheEmptyStateShows)
{
    ASSERT_TRUE(isShown(view));
    EXPECT_TRUE(shows(view, QStringLiteral("No History")));
    EXPECT_TRUE(shows(view, QStringLiteral("Transcriptions you dictate will appear here.")));
    EXPECT_FALSE(isVisible(searchHistory));
    EXPECT_FALSE(isVisible(clearHistory));
}

TEST_F(HistoryViewTest, WhatWasDictatedBeforeItIsShownIsThereNewestFirst)
{
    dictate("one");
    dictate("two & <b>three</b>");
    ASSERT_TRUE(isShown(view));
    EXPECT_THAT(visibleTexts(), ElementsAre(QStringLiteral("two & <b>three</b>"), QStringLiteral("one")));
    EXPECT_TRUE(shows(view, QStringLiteral("two & <b>three</b>")));
    EXPECT_TRUE(isVisible(searchHistory));
    EXPECT_TRUE(isVisible(clearHistory));
}

TEST_F(HistoryViewTest, TypingSearches)
{
    dictate("one");
    dictate("two");
    ASSERT_TRUE(isShown(view));
    auto& field = named<QLineEdit>(view, searchHistory);
    QTest::keyClicks(&field, QStringLiteral("ON"));
    EXPECT_THAT(visibleTexts(), ElementsAre(QStringLiteral("one")));
    QTest::keyClicks(&field, QStringLiteral("x"));
    EXPECT_THAT(visibleTexts(), IsEmpty());
    EXPECT_TRUE(shows(view, QStringLiteral("No Matches")));
    EXPECT_TRUE(shows(view, QStringLiteral("No transcriptions match “ONx”.")));
    EXPECT_TRUE(field.isVisible());
    field.clear();
    EXPECT_EQ(visibleTexts().size(), 2U);
    EXPECT_FALSE(shows(view, QStringLiteral("No Matches")));
}

TEST_F(HistoryViewTest, ItsButtonsCopyAndDelete)
{
    dictate("one");
    dictate("two");
    ASSERT_TRUE(isShown(view));
    pressIn(1, "Copy");
    EXPECT_THAT(copied, ElementsAre(QStringLiteral("one")));
    pressIn(0, "Delete");
    EXPECT_THAT(visibleTexts(), ElementsAre(QStringLiteral("one")));
    pressIn(0, "Delete");
    EXPECT_THAT(store.history(), IsEmpty());
    EXPECT_TRUE(shows(view, QStringLiteral("No History")));
    EXPECT_FALSE(isVisible(searchHistory));
    EXPECT_FALSE(isVisible(clearHistory));
}

TEST_F(HistoryViewTest, ClearingIsConfirmed)
{
    dictate("one");
    ASSERT_TRUE(isShown(view));
    QTest::mouseClick(&named<QAbstractButton>(view, clearHistory), Qt::LeftButton);
    ASSERT_NE(confirmation(), nullptr);
    ASSERT_TRUE(waitUntil([&] { return confirmation()->isVisible(); }));
    EXPECT_TRUE(shows(*confirmation(), QStringLiteral("Clear all history?")));
    EXPECT_TRUE(
        shows(*confirmation(),
              QStringLiteral("This permanently removes every saved transcript and can't be undone.")));
    EXPECT_EQ(store.history().size(), 1U);
    answer(clearHistory);
    EXPECT_THAT(store.history(), IsEmpty());
    EXPECT_TRUE(shows(view, QStringLiteral("No History")));
    EXPECT_TRUE(confirmationIsGone());
}

TEST_F(HistoryViewTest, CancellingAndEscapeLeaveTheHistory)
{
    dictate("one");
    ASSERT_TRUE(isShown(view));
    for (const bool byKey : {false, true}) {
        QTest::mouseClick(&named<QAbstractButton>(view, clearHistory), Qt::LeftButton);
        ASSERT_NE(confirmation(), nullptr);
        if (byKey)
            QTest::keyClick(confirmation(), Qt::Key_Escape);
        else
            answer(QStringLiteral("Cancel"));
        EXPECT_FALSE(pane.showClearConfirm());
        EXPECT_TRUE(confirmationIsGone());
    }
    EXPECT_THAT(visibleTexts(), ElementsAre(QStringLiteral("one")));
}

TEST_F(HistoryViewTest, TheDeleteKeyDeletesTheEntryWithTheFocus)
{
    dictate("one");
    dictate("two");
    dictate("three");
    ASSERT_TRUE(isShown(view));
    rowsOf<HistoryRowView>(view)[1]->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
    EXPECT_THAT(visibleTexts(), ElementsAre(QStringLiteral("three"), QStringLiteral("one")));
    EXPECT_EQ(store.history().size(), 2U);
    EXPECT_TRUE(rowsOf<HistoryRowView>(view)[1]->hasFocus());
}

TEST_F(HistoryViewTest, TheDeleteKeyInTheSearchFieldDeletesNoEntry)
{
    dictate("one");
    ASSERT_TRUE(isShown(view));
    auto& field = named<QLineEdit>(view, searchHistory);
    field.setFocus();
    QTest::keyClick(&field, Qt::Key_Delete);
    EXPECT_EQ(store.history().size(), 1U);
}

TEST_F(HistoryViewTest, TheDeleteKeyDeletesNoEntryWhileAPartOfItIsSelected)
{
    dictate("one");
    ASSERT_TRUE(isShown(view));
    auto& text = *view.findChild<kit::SelectableText*>();
    text.setFocus();
    QTest::keyClick(&text, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&text, Qt::Key_Delete);
    EXPECT_EQ(store.history().size(), 1U);
}

TEST_F(HistoryViewTest, DeletingTheLastMatchLeadsBackToTheSearch)
{
    dictate("one");
    dictate("two");
    ASSERT_TRUE(isShown(view));
    auto& field = named<QLineEdit>(view, searchHistory);
    field.setText(QStringLiteral("one"));
    rowsOf<HistoryRowView>(view)[0]->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
    EXPECT_TRUE(field.hasFocus());
    EXPECT_EQ(store.history().size(), 1U);
}

TEST_F(HistoryViewTest, TheCopyKeysCopyTheEntryWithTheFocus)
{
    dictate("one");
    ASSERT_TRUE(isShown(view));
    rowsOf<HistoryRowView>(view)[0]->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_THAT(copied, ElementsAre(QStringLiteral("one")));
}

TEST_F(HistoryViewTest, OfALongHistoryOnlyAWindowfulIsMade)
{
    for (int i = 0; i < 1000; ++i)
        dictate("a transcript of some words");
    ASSERT_TRUE(isShown(view));
    testing::runFor(std::chrono::milliseconds(50));
    EXPECT_LT(view.findChildren<HistoryRowView*>().size(), 16);
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
    EXPECT_EQ(rowsOf<HistoryRowView>(view).back()->entry(), store.history().back());
}

TEST_F(HistoryViewTest, ReturnCancelsTheConfirmation)
{
    dictate("one");
    ASSERT_TRUE(isShown(view));
    QTest::mouseClick(&named<QAbstractButton>(view, clearHistory), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return confirmation()->isActiveWindow(); }));
    auto& cancel = named<QPushButton>(*confirmation(), QStringLiteral("Cancel"));
    EXPECT_TRUE(cancel.isDefault());
    EXPECT_TRUE(cancel.hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(store.history().size(), 1U);
    EXPECT_FALSE(pane.showClearConfirm());
}

} // namespace
} // namespace corvandi
