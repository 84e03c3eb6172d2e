#include "views/kit/virtual_list.h"

#include "views/settings/settings_fixture.h"

#include "views/kit/button.h"
#include "views/kit/child.h"
#include "views/kit/controls.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace corvandi::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Lt;

/// What the test puts into the list: a number, whose row is as high as it says.
struct Thing {
    QUuid id;
    int number = 0;
    int height = 40;
};

class Row : public kit::ListRow {
public:
    Row()
        : field_(kit::makeChild<kit::TextField>(*this, std::nullopt))
        , button_(kit::makeChild<kit::Button>(*this, QStringLiteral("Press"), kit::ButtonRole::standard))
    {
        addControl(field_);
        addControl(button_);
        button_.move(200, 0);
    }
    void setThing(const Thing& thing)
    {
        number = thing.number;
        height_ = thing.height;
    }
    void leaveItem() override { number = -1; }
    [[nodiscard]] QString spokenText() const override { return QString::number(number); }
    [[nodiscard]] int heightForWidth(int) const override { return height_; }

    int number = -1;

private:
    int height_ = 0;
    kit::TextField& field_;
    kit::Button& button_;
};

/// A list between two fields, in a window that shows ten of its rows.
class VirtualListTest : public ::testing::Test, protected kit::ListContent {
protected:
    VirtualListTest()
    {
        form.resize(500, 400);
        before.setAccessibleName(QStringLiteral("before"));
        form.setWidgetResizable(true);
        form.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        form.setFocusPolicy(Qt::NoFocus);
        form.setWidget(&column);
        auto& layout = kit::makeLayout<QVBoxLayout>(column, {24, 4, 24, 24}, 18);
        layout.addWidget(&before);
        layout.addWidget(list);
        layout.addWidget(&after);
        layout.addStretch(1);
        QObject::connect(list, &kit::VirtualList::deleteRequested, &form, [this](std::size_t index) {
            things.erase(things.begin() + static_cast<std::ptrdiff_t>(index));
            list->reload();
        });
    }
    void fill(int count, int height = 40)
    {
        for (int number = 0; number < count; ++number)
            things.push_back({QUuid::createUuid(), number, height});
        list->reload();
    }
    [[nodiscard]] bool isFilled()
    {
        const bool isActive = isShown(form);
        return isActive && waitUntil([this] {
                   return list->height() == list->sizeHint().height() && hasRowsForTheWholeView();
               });
    }
    [[nodiscard]] bool hasRowsForTheWholeView() const
    {
        const auto rows = list->rows();
        const int bottom = list->mapFrom(form.viewport(), QPoint(0, form.viewport()->height())).y();
        return !rows.empty() && rows.back()->geometry().bottom() + 1 >= qMin(bottom, list->height());
    }
    [[nodiscard]] std::vector<int> numbers() const
    {
        std::vector<int> numbers;
        for (const auto* row : list->rows())
            numbers.push_back(static_cast<const Row*>(row)->number);
        return numbers;
    }
    [[nodiscard]] Row& row(int number) const
    {
        for (auto* row : list->rows()) {
            if (auto& wanted = static_cast<Row&>(*row); wanted.number == number)
                return wanted;
        }
        throw std::runtime_error("there is no such row");
    }
    /// Of the row, on the screen.
    [[nodiscard]] int yOf(int number) const { return row(number).mapTo(form.viewport(), QPoint()).y(); }
    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    /// As the Tab key gives it to a row.
    void focusByKeyboard(int number) const { row(number).setFocus(Qt::TabFocusReason); }
    /// The number of the row with the focus.
    [[nodiscard]] int focused() const
    {
        const QWidget* widget = QApplication::focusWidget();
        for (const auto* row : list->rows()) {
            if (row == widget || row->isAncestorOf(widget))
                return static_cast<const Row*>(row)->number;
        }
        return -1;
    }

    [[nodiscard]] std::size_t count() const override { return things.size(); }
    [[nodiscard]] QUuid idAt(std::size_t index) const override { return things[index].id; }
    [[nodiscard]] int estimatedHeight(std::size_t, int) const override { return 40; }
    [[nodiscard]] std::unique_ptr<kit::ListRow> makeRow() override
    {
        ++made;
        return std::make_unique<Row>();
    }
    void showItem(kit::ListRow& row, std::size_t index) override
    {
        static_cast<Row&>(row).setThing(things[index]);
    }

    std::vector<Thing> things;
    int made = 0;
    QScrollArea form;
    QWidget& column = kit::makeChild<QWidget>(form);
    kit::TextField& before = kit::makeChild<kit::TextField>(column, std::nullopt);
    kit::VirtualList* list =
        &kit::makeChild<kit::VirtualList>(column, static_cast<kit::ListContent&>(*this), form);
    kit::TextField& after = kit::makeChild<kit::TextField>(column, std::nullopt);
};

TEST_F(VirtualListTest, OnlyRowsThatCanBeSeenExist)
{
    fill(1000);
    ASSERT_TRUE(isFilled());
    EXPECT_THAT(list->rows().size(), Lt(12U));
    EXPECT_EQ(list->height(), 1000 * 41 - 1);
}

TEST_F(VirtualListTest, RowsAreUsedAgainAsTheyAreScrolled)
{
    fill(1000);
    ASSERT_TRUE(isFilled());
    for (const int y : {20'000, 5'000, 40'000, 0}) {
        form.verticalScrollBar()->setValue(y);
        EXPECT_TRUE(hasRowsForTheWholeView()) << y;
    }
    EXPECT_THAT(made, Lt(16));
    EXPECT_EQ(numbers().front(), 0);
}

TEST_F(VirtualListTest, ALargeWindowIsFilledOverSeveralTurns)
{
    fill(1000);
    form.resize(500, 1000);
    form.show();
    EXPECT_THAT(made, Lt(10));
    EXPECT_TRUE(waitUntil([this] { return hasRowsForTheWholeView(); }));
}

TEST_F(VirtualListTest, WhatIsSeenStaysInItsPlaceWhileRowsAboveItGetTheirHeight)
{
    fill(200, 90);
    ASSERT_TRUE(isFilled());
    form.verticalScrollBar()->setValue(form.verticalScrollBar()->maximum() / 2);
    QCoreApplication::processEvents();
    for (int step = 0; step < 100; ++step) {
        const int seen = numbers().at(1);
        const int y = yOf(seen);
        form.verticalScrollBar()->setValue(form.verticalScrollBar()->value() - 30);
        QCoreApplication::processEvents();
        ASSERT_EQ(yOf(seen), y + 30) << "at step " << step;
    }
}

TEST_F(VirtualListTest, TheTabKeyPassesThroughOneRow)
{
    fill(1000);
    ASSERT_TRUE(isFilled());
    before.setFocus();
    for (const bool isInList : {true, true, true, false}) {
        press(Qt::Key_Tab);
        EXPECT_EQ(focused(), isInList ? 0 : -1);
    }
    EXPECT_TRUE(after.hasFocus());
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_GT(focused(), 980) << "the field behind the list has led to its end";
}

TEST_F(VirtualListTest, TheTabKeyLeadsToWhatCanBeSeen)
{
    fill(1000);
    ASSERT_TRUE(isFilled());
    before.setFocus();
    form.verticalScrollBar()->setValue(20'000);
    press(Qt::Key_Tab);
    constexpr double height = 41;
    EXPECT_NEAR(focused(), 20'000 / height, 2);
    EXPECT_GE(yOf(focused()), 0);
}

TEST_F(VirtualListTest, TheArrowKeysMoveToTheSameControlOfOtherRows)
{
    fill(1000);
    ASSERT_TRUE(isFilled());
    row(0).stops()[2]->setFocus();
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_TRUE(row(2).stops()[2]->hasFocus());
    press(Qt::Key_Up);
    EXPECT_TRUE(row(1).stops()[2]->hasFocus());
    row(1).stops()[1]->setFocus();
    press(Qt::Key_Down);
    EXPECT_TRUE(row(2).stops()[1]->hasFocus()) << "text fields, too";
}

TEST_F(VirtualListTest, KeysLeadToBothEndsAndPageByPage)
{
    fill(1000);
    ASSERT_TRUE(isFilled());
    focusByKeyboard(3);
    press(Qt::Key_End);
    EXPECT_EQ(focused(), 999);
    EXPECT_LE(yOf(999) + 40, form.viewport()->height());
    press(Qt::Key_PageUp);
    EXPECT_NEAR(focused(), 990, 1);
    press(Qt::Key_Home);
    EXPECT_EQ(focused(), 0);
    press(Qt::Key_PageDown);
    EXPECT_NEAR(focused(), 9, 1);
    press(Qt::Key_Home);
    press(Qt::Key_Up);
    EXPECT_EQ(focused(), 0) << "there is nothing above";
}

TEST_F(VirtualListTest, EveryRowCanBeReachedByTheArrowKeys)
{
    fill(60, 70);
    ASSERT_TRUE(isFilled());
    focusByKeyboard(0);
    for (int number = 0; number < 60; ++number) {
        ASSERT_EQ(focused(), number);
        ASSERT_GE(yOf(number), 0);
        ASSERT_LE(yOf(number) + 70, form.viewport()->height());
        press(Qt::Key_Down);
    }
}

TEST_F(VirtualListTest, ARowHigherThanTheWindowIsScrolledThrough)
{
    fill(3, 1000);
    ASSERT_TRUE(isFilled());
    focusByKeyboard(0);
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), 0);
    EXPECT_LT(yOf(0), 0);
    for (int keys = 0; keys < 10 && focused() == 0; ++keys)
        press(Qt::Key_Down);
    EXPECT_EQ(focused(), 1);
    EXPECT_NEAR(yOf(1), 8, 1) << "its beginning is shown";
}

TEST_F(VirtualListTest, TheRowWithTheFocusStaysWhileItIsScrolledOutOfView)
{
    fill(1000);
    ASSERT_TRUE(isFilled());
    row(2).stops()[1]->setFocus();
    const auto* edited = &row(2);
    form.verticalScrollBar()->setValue(20'000);
    EXPECT_EQ(&row(2), edited);
    EXPECT_TRUE(edited->stops()[1]->hasFocus());
    EXPECT_TRUE(hasRowsForTheWholeView());
}

TEST_F(VirtualListTest, TheDeleteKeyDeletesTheRowAndTheNextOneGetsTheFocus)
{
    fill(4);
    ASSERT_TRUE(isFilled());
    focusByKeyboard(1);
    press(Qt::Key_Delete);
    EXPECT_THAT(numbers(), ElementsAre(0, 2, 3));
    EXPECT_EQ(focused(), 2);
    press(Qt::Key_Delete);
    press(Qt::Key_Delete);
    EXPECT_THAT(numbers(), ElementsAre(0));
    EXPECT_EQ(focused(), 0) << "the one before, after the last";
}

TEST_F(VirtualListTest, TheDeleteKeyOnAButtonKeepsTheFocusOnThatButton)
{
    fill(4);
    ASSERT_TRUE(isFilled());
    row(1).stops()[2]->setFocus();
    press(Qt::Key_Delete);
    EXPECT_TRUE(row(2).stops()[2]->hasFocus());
}

TEST_F(VirtualListTest, TheDeleteKeyInATextFieldIsForTheText)
{
    fill(4);
    ASSERT_TRUE(isFilled());
    row(1).stops()[1]->setFocus();
    press(Qt::Key_Delete);
    EXPECT_EQ(things.size(), 4U);
}

TEST_F(VirtualListTest, ADeleteKeyThatIsHeldDeletesOneRow)
{
    fill(4);
    ASSERT_TRUE(isFilled());
    focusByKeyboard(0);
    press(Qt::Key_Delete);
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier, QString(), true);
    QCoreApplication::sendEvent(QApplication::focusWidget(), &repeated);
    EXPECT_THAT(numbers(), ElementsAre(1, 2, 3));
}

TEST_F(VirtualListTest, TheLastRowLeavesTheFocusToAnother)
{
    fill(1);
    list->setFallbackFocus(after);
    ASSERT_TRUE(isFilled());
    focusByKeyboard(0);
    press(Qt::Key_Delete);
    EXPECT_THAT(numbers(), IsEmpty());
    EXPECT_TRUE(after.hasFocus());
}

TEST_F(VirtualListTest, WhatIsUnchangedKeepsItsRow)
{
    fill(4);
    ASSERT_TRUE(isFilled());
    const auto* last = &row(3);
    things.insert(things.begin(), Thing{QUuid::createUuid(), 10});
    things.erase(things.begin() + 2);
    list->reload();
    EXPECT_THAT(numbers(), ElementsAre(10, 0, 2, 3));
    EXPECT_EQ(&row(3), last);
    EXPECT_EQ(last->spokenPosition(), QStringLiteral("4 of 4"));
}

TEST_F(VirtualListTest, ThingsWithTheSameIdentifierHaveRowsOfTheirOwn)
{
    fill(3);
    things[1].id = things[0].id;
    ASSERT_TRUE(isFilled());
    for (int times = 0; times < 3; ++times)
        list->reload();
    EXPECT_THAT(numbers(), ElementsAre(0, 1, 2));
    EXPECT_THAT(made, Lt(5));
}

TEST_F(VirtualListTest, ItFollowsTheWidthOfTheWindow)
{
    fill(1000, 60);
    ASSERT_TRUE(isFilled());
    form.verticalScrollBar()->setValue(10'000);
    const int seen = numbers().at(2);
    form.resize(400, 400);
    EXPECT_TRUE(waitUntil([&] { return row(seen).width() == list->width() && list->width() < 400; }));
    EXPECT_GE(yOf(seen), 0);
    EXPECT_LT(yOf(seen), 200);
}

} // namespace
} // namespace corvandi::testing
