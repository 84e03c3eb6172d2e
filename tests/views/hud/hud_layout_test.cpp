#include "views/hud/hud_layout.h"

#include <QFont>

#include <gmock/gmock.h>

#include <cmath>

namespace corvandi {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class LineBreakingTest : public ::testing::Test {
protected:
    LineBreakingTest()
    {
        QFont small;
        small.setPixelSize(12);
        font = QFontMetricsF(small);
    }
    [[nodiscard]] QStringList broken(const QString& text, qreal room = 1000) const
    {
        return brokenIntoLines(text, font, 360, room);
    }
    [[nodiscard]] qreal width(const QString& line) const { return font.horizontalAdvance(line); }

    QFontMetricsF font{QFont()};
    const QString longMessage =
        QStringLiteral("Transcription incomplete. Partial text copied to the clipboard; press ⌘V to paste.");
};

TEST_F(LineBreakingTest, NothingIsNoLine)
{
    EXPECT_THAT(broken(QString()), IsEmpty());
}

TEST_F(LineBreakingTest, WhatFitsStaysOnOneLine)
{
    EXPECT_THAT(broken(QStringLiteral("Didn't catch that.")),
                ElementsAre(QStringLiteral("Didn't catch that.")));
}

TEST_F(LineBreakingTest, ALongMessageBecomesTwoLinesOfAboutTheSameWidth)
{
    const QStringList lines = broken(longMessage);
    ASSERT_THAT(lines, SizeIs(2));
    EXPECT_EQ(lines.join(QLatin1Char(' ')), longMessage) << "nothing is lost";
    EXPECT_LT(std::abs(width(lines[0]) - width(lines[1])), 80);
    EXPECT_LT(std::max(width(lines[0]), width(lines[1])), width(longMessage) * 0.6);
}

TEST_F(LineBreakingTest, BreaksBetweenWordsOnly)
{
    for (const QString& line : broken(longMessage)) {
        for (const QString& word : line.split(QLatin1Char(' ')))
            EXPECT_TRUE(longMessage.split(QLatin1Char(' ')).contains(word));
    }
}

TEST_F(LineBreakingTest, LanguagesWithoutSpacesAreBrokenToo)
{
    const QString message = QStringLiteral("転写が不完全です。").repeated(8);
    const QStringList lines = broken(message);
    ASSERT_THAT(lines, SizeIs(2));
    EXPECT_EQ(lines.join(QString()), message);
}

TEST_F(LineBreakingTest, WhatCanNotBeBrokenIsCutOffAtTheEnd)
{
    const QStringList lines = broken(QString(200, QLatin1Char('m')));
    ASSERT_THAT(lines, SizeIs(1));
    EXPECT_TRUE(lines[0].endsWith(QStringLiteral("…")));
    EXPECT_LE(width(lines[0]), 1000);
}

TEST_F(LineBreakingTest, NeverMoreThanTwoLinesWithinTheRoom)
{
    const QStringList lines = broken(longMessage.repeated(5), 400);
    ASSERT_THAT(lines, SizeIs(2));
    EXPECT_TRUE(lines[1].endsWith(QStringLiteral("…")));
    for (const QString& line : lines)
        EXPECT_LE(width(line), 400);
}

using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr qreal screenWidth = 1200;

class HUDLayoutTest : public ::testing::Test {
protected:
    HUDLayoutTest()
    {
        QFont small;
        small.setPixelSize(12);
        font = QFontMetricsF(small);
    }
    [[nodiscard]] HUDLayout layOutFace(HUDState state, const QString& text = QString())
    {
        face.state = state;
        face.text = text;
        return layOut(face, font, screenWidth);
    }

    HUDFace face{HUDState::recording, std::vector<double>(28, 0.05), QStringLiteral("0:00"), QString()};
    QFontMetricsF font{QFont()};
    const QString message = QStringLiteral("Copied to the clipboard");
};

TEST_F(HUDLayoutTest, TheRecordingFaceIsADotAMeterAndATimeInARow)
{
    const HUDLayout layout = layOutFace(HUDState::recording);
    EXPECT_EQ(layout.symbol.size(), QSizeF(7, 7));
    EXPECT_EQ(layout.symbol.left(), layout.pill.left() + 14);
    EXPECT_EQ(layout.waveform.left(), layout.symbol.right() + 9);
    EXPECT_EQ(layout.waveform.height(), 32);
    ASSERT_THAT(layout.lines, SizeIs(1));
    EXPECT_EQ(layout.lines[0].text, QStringLiteral("0:00"));
    EXPECT_EQ(layout.lines[0].frame.left(), layout.waveform.right() + 9);
    EXPECT_EQ(layout.lines[0].frame.width(), 32);
    EXPECT_NEAR(layout.pill.right(), layout.lines[0].frame.right() + 14, 2);
    EXPECT_EQ(layout.pill.height(), 32 + 2 * 7);
    EXPECT_LE(layout.pill.width(), 300);
}

TEST_F(HUDLayoutTest, EveryPartStandsInTheMiddleOfThePill)
{
    const HUDLayout layout = layOutFace(HUDState::recording);
    for (const QRectF& frame : {layout.pill, layout.symbol, layout.waveform, layout.lines[0].frame})
        EXPECT_EQ(frame.center().y(), 0);
    EXPECT_EQ(layout.pill.center().x(), 0);
}

TEST_F(HUDLayoutTest, BarsAreAsTallAsTheirValuesButNeverTooSmallToSee)
{
    const QRectF waveform = layOutFace(HUDState::recording).waveform;
    const std::pair<double, double> heights[] = {{0.06, 3}, {0.05, 3}, {0.1, 3}, {0.5, 15}, {1.0, 30}};
    for (const auto& [value, height] : heights) {
        const QRectF bar = barFrame(waveform, 0, value);
        EXPECT_DOUBLE_EQ(bar.height(), height) << value;
        EXPECT_DOUBLE_EQ(bar.width(), 2.5);
        EXPECT_EQ(bar.center().y(), 0);
    }
}

TEST_F(HUDLayoutTest, TheBarsFillTheMeterFromLeftToRightWithoutTouching)
{
    const QRectF waveform = layOutFace(HUDState::recording).waveform;
    EXPECT_EQ(barFrame(waveform, 0, 1).left(), waveform.left());
    EXPECT_EQ(barFrame(waveform, 27, 1).right(), waveform.right());
    for (size_t i = 1; i < 28; ++i)
        EXPECT_GT(barFrame(waveform, i, 1).left(), barFrame(waveform, i - 1, 1).right());
}

TEST_F(HUDLayoutTest, LevelsAndTimeMoveNothing)
{
    const HUDLayout quiet = layOutFace(HUDState::recording);
    face.bars.assign(28, 1.0);
    face.elapsed = QStringLiteral("8:59");
    const HUDLayout loud = layOutFace(HUDState::recording);
    EXPECT_EQ(loud.pill, quiet.pill);
    EXPECT_EQ(loud.lines[0].frame, quiet.lines[0].frame);
}

TEST_F(HUDLayoutTest, ALongTimeGetsTheRoomThatItNeeds)
{
    face.elapsed = QStringLiteral("100:00");
    const HUDLayout layout = layOutFace(HUDState::recording);
    EXPECT_GE(layout.lines[0].frame.width(), steadyWidth(font, face.elapsed));
    EXPECT_GE(layout.pill.right(), layout.lines[0].frame.right() + 14);
}

TEST_F(HUDLayoutTest, AllDigitsTakeTheSameRoom)
{
    EXPECT_EQ(steadyWidth(font, QStringLiteral("1:11")), steadyWidth(font, QStringLiteral("8:48")));
}

TEST_F(HUDLayoutTest, TheOtherFacesAreASymbolAndALine)
{
    const std::pair<HUDState, qreal> faces[] = {
        {HUDState::processing, 14}, {HUDState::notice, 12}, {HUDState::error, 12}};
    for (const auto& [state, size] : faces) {
        const HUDLayout layout = layOutFace(state, message);
        EXPECT_TRUE(layout.waveform.isEmpty());
        EXPECT_EQ(layout.symbol.size(), QSizeF(size, size));
        EXPECT_EQ(layout.symbol.left(), layout.pill.left() + 14);
        ASSERT_THAT(layout.lines, SizeIs(1));
        EXPECT_EQ(layout.lines[0].frame.left(), layout.symbol.right() + 9);
        EXPECT_GE(layout.lines[0].frame.width(), font.horizontalAdvance(message));
        EXPECT_NEAR(layout.pill.right(), layout.lines[0].frame.right() + 14, 2);
        EXPECT_EQ(layout.lines[0].frame.center().y(), 0);
    }
}

TEST_F(HUDLayoutTest, WithoutALineTheSymbolStandsAlone)
{
    for (const HUDState state : {HUDState::processing, HUDState::notice, HUDState::error}) {
        const HUDLayout layout = layOutFace(state);
        EXPECT_THAT(layout.lines, IsEmpty());
        EXPECT_EQ(layout.symbol.center(), layout.pill.center());
        EXPECT_EQ(layout.pill.width(), layout.symbol.width() + 2 * 14);
    }
}

TEST_F(HUDLayoutTest, ALongMessageIsReadableEntirelyWithinThePanelsHeight)
{
    const QString messages[] = {
        QStringLiteral("Transcription incomplete. Partial text copied to the clipboard; press ⌘V to paste."),
        QStringLiteral("Die Transkription ist unvollständig. Der vorhandene Teil des Textes wurde in die "
                       "Zwischenablage kopiert; einfügen mit ⌘V.")};
    for (const QString& text : messages) {
        const HUDLayout layout = layOutFace(HUDState::error, text);
        ASSERT_THAT(layout.lines, SizeIs(2));
        EXPECT_EQ(layout.lines[0].text + QLatin1Char(' ') + layout.lines[1].text, text);
        EXPECT_LE(layout.pill.height(), 64);
        EXPECT_LT(layout.pill.width(), 560);
        EXPECT_EQ((layout.lines[0].frame | layout.lines[1].frame).center().y(), 0);
        EXPECT_EQ(layout.lines[1].frame.top(), layout.lines[0].frame.bottom());
    }
}

TEST_F(HUDLayoutTest, AnEndlessMessageStaysWithinWhatIsThere)
{
    const HUDLayout layout = layOutFace(HUDState::error, (message + QLatin1Char(' ')).repeated(30));
    EXPECT_LE(layout.pill.width(), screenWidth);
    for (const HUDLine& line : layout.lines)
        EXPECT_LE(line.frame.right(), layout.pill.right() - 14);
}

TEST_F(HUDLayoutTest, ThePillsEdgesStandOnWholePoints)
{
    for (int length = 1; length < 20; ++length) {
        const HUDLayout layout = layOutFace(HUDState::notice, QString(length, QLatin1Char('i')));
        EXPECT_EQ(layout.pill, QRectF(layout.pill.toRect()));
    }
}

TEST(HUDFace, LineBreaksOfTheModelBecomeSpaces)
{
    HUDModel model;
    model.setStatusText(QStringLiteral("one\ntwo\tthree "));
    EXPECT_EQ(HUDFace::of(model).text, QStringLiteral("one two three"));
    model.setStatusText(QStringLiteral(" \n"));
    EXPECT_TRUE(HUDFace::of(model).text.isEmpty());
}

} // namespace
} // namespace corvandi
