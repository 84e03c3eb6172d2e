#include "hud_view/hud_layout.h"

#include <QFont>

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

class HudLayoutTest : public ::testing::Test {
protected:
    HudLayoutTest()
    {
        QFont small;
        small.setPixelSize(12);
        font = QFontMetricsF(small);
    }
    [[nodiscard]] HudLayout layOutFace(HUDState state, const QString& text = QString())
    {
        model.setState(state);
        model.setStatusText(text);
        return layOut(model, font, area);
    }

    HUDModel model;
    QFontMetricsF font{QFont()};
    const QRectF area{0, 0, 300, 64};
    const QString message = QStringLiteral("Copied to the clipboard");
};

TEST_F(HudLayoutTest, TheRecordingFaceIsADotAMeterAndATimeInARow)
{
    const HudLayout layout = layOutFace(HUDState::recording);
    EXPECT_EQ(layout.symbol.size(), QSizeF(7, 7));
    EXPECT_EQ(layout.symbol.left(), layout.pill.left() + 14);
    ASSERT_THAT(layout.bars, SizeIs(28));
    EXPECT_EQ(layout.bars.front().left(), layout.symbol.right() + 9);
    EXPECT_EQ(layout.text.left(), layout.bars.back().right() + 9);
    EXPECT_GE(layout.text.width(), 32);
    EXPECT_GE(layout.pill.right(), layout.text.right() + 14);
    EXPECT_EQ(layout.pill.height(), 32 + 2 * 7);
}

TEST_F(HudLayoutTest, EveryPartStandsInTheMiddleOfThePill)
{
    const HudLayout layout = layOutFace(HUDState::recording);
    EXPECT_EQ(layout.pill.center(), area.center());
    EXPECT_EQ(layout.symbol.center().y(), area.center().y());
    EXPECT_EQ(layout.text.center().y(), area.center().y());
    for (const QRectF& bar : layout.bars)
        EXPECT_EQ(bar.center().y(), area.center().y());
}

TEST_F(HudLayoutTest, BarsAreAsTallAsTheirValuesButNeverTooSmallToSee)
{
    const std::pair<double, double> heights[] = {{0.06, 3}, {0.05, 3}, {0.1, 3}, {0.5, 15}, {1.0, 30}};
    for (const auto& [value, height] : heights) {
        model.setBars({value});
        const HudLayout layout = layOutFace(HUDState::recording);
        ASSERT_THAT(layout.bars, SizeIs(1));
        EXPECT_DOUBLE_EQ(layout.bars.front().height(), height) << value;
        EXPECT_DOUBLE_EQ(layout.bars.front().width(), 2.5);
    }
}

TEST_F(HudLayoutTest, TheOldestBarIsOnTheLeftAndNoneTouchesTheNext)
{
    std::vector<double> values(28, 0.05);
    values.front() = 1;
    model.setBars(values);
    const HudLayout layout = layOutFace(HUDState::recording);
    EXPECT_DOUBLE_EQ(layout.bars.front().height(), 30);
    for (size_t i = 1; i < layout.bars.size(); ++i)
        EXPECT_GT(layout.bars[i].left(), layout.bars[i - 1].right());
}

TEST_F(HudLayoutTest, LevelsMoveNothingButTheBars)
{
    const HudLayout quiet = layOutFace(HUDState::recording);
    model.setBars(std::vector<double>(28, 1.0));
    model.setElapsed(QStringLiteral("8:59"));
    const HudLayout loud = layOutFace(HUDState::recording);
    EXPECT_EQ(loud.pill, quiet.pill);
    EXPECT_EQ(loud.text, quiet.text);
}

TEST_F(HudLayoutTest, ALongTimeGetsTheRoomThatItNeeds)
{
    model.setElapsed(QStringLiteral("100:00"));
    const HudLayout layout = layOutFace(HUDState::recording);
    EXPECT_GE(layout.text.width(), steadyWidth(font, model.elapsed()));
    EXPECT_GE(layout.pill.right(), layout.text.right() + 14);
}

TEST_F(HudLayoutTest, AllDigitsTakeTheSameRoom)
{
    EXPECT_EQ(steadyWidth(font, QStringLiteral("1:11")), steadyWidth(font, QStringLiteral("8:48")));
}

TEST_F(HudLayoutTest, TheOtherFacesAreASymbolAndALine)
{
    for (const HUDState state : {HUDState::processing, HUDState::notice, HUDState::error}) {
        const HudLayout layout = layOutFace(state, message);
        EXPECT_THAT(layout.bars, IsEmpty());
        EXPECT_EQ(layout.symbol.size(), QSizeF(14, 14));
        EXPECT_EQ(layout.symbol.left(), layout.pill.left() + 14);
        EXPECT_EQ(layout.text.left(), layout.symbol.right() + 9);
        EXPECT_GE(layout.text.width(), font.horizontalAdvance(message));
        EXPECT_EQ(layout.pill.center(), area.center());
        EXPECT_LT(layout.pill.height(), area.height());
    }
}

TEST_F(HudLayoutTest, WithoutALineTheSymbolStandsAlone)
{
    for (const HUDState state : {HUDState::processing, HUDState::notice, HUDState::error}) {
        const HudLayout layout = layOutFace(state, QStringLiteral(" \n"));
        EXPECT_TRUE(layout.text.isEmpty());
        EXPECT_EQ(layout.symbol.center(), layout.pill.center());
        EXPECT_EQ(layout.pill.width(), 14 + 2 * 14);
    }
}

TEST_F(HudLayoutTest, AnOverlongLineStaysWithinTheArea)
{
    const HudLayout layout = layOutFace(HUDState::error, message.repeated(10));
    EXPECT_EQ(layout.pill.width(), area.width());
    EXPECT_EQ(layout.text.right(), layout.pill.right() - 14);
}

TEST_F(HudLayoutTest, ThePillsEdgesStandOnWholePoints)
{
    for (int length = 1; length < 20; ++length) {
        const HudLayout layout = layOutFace(HUDState::notice, QString(length, QLatin1Char('i')));
        EXPECT_EQ(layout.pill, QRectF(layout.pill.toRect()));
    }
}

TEST_F(HudLayoutTest, LineBreaksBecomeSpaces)
{
    EXPECT_EQ(singleLine(QStringLiteral("one\ntwo\tthree ")), QStringLiteral("one two three"));
}

} // namespace
} // namespace corvandi
