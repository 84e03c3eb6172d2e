#include "hud_view/line_breaking.h"

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

} // namespace
} // namespace corvandi
