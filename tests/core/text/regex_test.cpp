#include "core/text/regex.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

TEST(Regex, FindsTheFirstMatch)
{
    const Regex regex(QStringLiteral("b+"));
    EXPECT_EQ(regex.firstMatch(QStringLiteral("abbab")), 1);
    EXPECT_EQ(regex.firstMatch(QStringLiteral("bab")), 0);
    EXPECT_EQ(regex.firstMatch(QStringLiteral("aa")), std::nullopt);
    EXPECT_EQ(regex.firstMatch(QString()), std::nullopt);
}

TEST(Regex, ReplacesEveryMatchByATemplate)
{
    EXPECT_EQ(Regex(QStringLiteral("<(.)>")).replaced(QStringLiteral("<a>b<c>"), QStringLiteral("$1!")),
              QStringLiteral("a!bc!"));
}

TEST(Regex, MindsLetterCaseUnlessToldNotTo)
{
    EXPECT_EQ(Regex(QStringLiteral("a")).firstMatch(QStringLiteral("A")), std::nullopt);
    EXPECT_EQ(Regex(QStringLiteral("a"), Regex::LetterCase::Ignored).firstMatch(QStringLiteral("A")), 0);
}

TEST(Regex, APatternThatDoesNotCompileChangesNothing)
{
    const Regex regex(QStringLiteral("("));
    EXPECT_FALSE(regex.isValid());
    EXPECT_EQ(regex.firstMatch(QStringLiteral("(")), std::nullopt);
    EXPECT_EQ(regex.replaced(QStringLiteral("("), QStringLiteral("x")), QStringLiteral("("));
}

TEST(Regex, ATemplateThatNamesAMissingGroupChangesNothing)
{
    EXPECT_EQ(Regex(QStringLiteral("a")).replaced(QStringLiteral("a"), QStringLiteral("$1")),
              QStringLiteral("a"));
}

TEST(Regex, AMatchThatNeedsTooMuchMemoryChangesNothing)
{
    const QString text(4'000'000, QLatin1Char('a'));
    const Regex regex(QStringLiteral("^(?:a|b)*c"));
    ASSERT_TRUE(regex.isValid());
    EXPECT_EQ(regex.firstMatch(text), std::nullopt);
    EXPECT_TRUE(regex.replaced(text, QString()) == text);
}

} // namespace
} // namespace corvandi
