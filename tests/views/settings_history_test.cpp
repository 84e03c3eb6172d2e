#include "settings_fixture.h"

#include "settings_ui/history_pane_view.h"
#include "storage/store_fixture.h"

#include <QElapsedTimer>
#include <QMessageBox>
#include <QScrollBar>

#include <algorithm>

namespace corvandi {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::isShown;
using testing::named;
using testing::shows;
using testing::waitUntil;

const QString clearHistory = QStringLiteral("Clear History");
const QString searchHistory = QStringLiteral("Search History");

class HistoryViewTest : public StoreFixture {
protected:
    void dictate(const char* text) { store.addHistory(QString::fromUtf8(text), Date{}); }
    [[nodiscard]] std::vector<QString> visibleTexts() const
    {
        std::vector<QString> texts;
        for (const auto* row : view.findChildren<HistoryRowView*>()) {
            if (row->isVisible())
                texts.push_back(row->entry().text);
        }
        return texts;
    }
    [[nodiscard]] bool isVisible(const QString& name) const { return named(view, name).isVisible(); }
    void pressIn(int row, const char* button)
    {
        const auto rows = view.findChildren<HistoryRowView*>();
        QTest::mouseClick(&named<QAbstractButton>(*rows.at(row), QString::fromLatin1(button)),
                          Qt::LeftButton);
    }
    [[nodiscard]] QMessageBox* confirmation() const { return view.findChild<QMessageBox*>(); }
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
    EXPECT_EQ(confirmation()->text(), QStringLiteral("Clear all history?"));
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

TEST_F(HistoryViewTest, ALongHistoryShowsAsFarAsItIsScrolled)
{
    for (int i = 0; i < 1000; ++i)
        dictate("a transcript of some words");
    view.resize(500, 400);
    ASSERT_TRUE(isShown(view));
    EXPECT_EQ(visibleTexts().size(), 30U);
    QElapsedTimer clock;
    clock.start();
    const auto scrollTo = [&](std::size_t count) {
        return waitUntil([&] {
            view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
            return visibleTexts().size() >= count;
        });
    };
    EXPECT_TRUE(scrollTo(150));
    std::printf("150 rows after %lld ms\n", static_cast<long long>(clock.elapsed()));
    EXPECT_TRUE(scrollTo(300));
    std::printf("300 rows after %lld ms\n", static_cast<long long>(clock.elapsed()));
    EXPECT_TRUE(scrollTo(1000));
    std::printf("1000 rows after %lld ms\n", static_cast<long long>(clock.elapsed()));
}

} // namespace
} // namespace corvandi
