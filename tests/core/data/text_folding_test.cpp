#include "core/data/text_folding.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

bool isFound(const QString& wanted, const QString& text, const char* locale = "en-US")
{
    const TextFolding folding{Locale(QLatin1String(locale))};
    return TextFolding::contains(folding.folded(text), folding.folded(wanted));
}

QString fromUtf8(const char* text)
{
    return QString::fromUtf8(text);
}

TEST(TextFolding, LetterCaseDoesNotMatter)
{
    EXPECT_TRUE(isFound(QStringLiteral("hello"), QStringLiteral("Say HELLO there")));
    EXPECT_TRUE(isFound(QStringLiteral("HELLO"), QStringLiteral("say hello there")));
    EXPECT_TRUE(isFound(fromUtf8("ÜBER"), fromUtf8("darüber")));
    EXPECT_TRUE(isFound(fromUtf8("привет"), fromUtf8("ПРИВЕТ, мир")));
    EXPECT_TRUE(isFound(fromUtf8("ὈΔΥΣΣΕΎΣ"), fromUtf8("ὀδυσσεύς")));
    EXPECT_TRUE(isFound(fromUtf8("straße"), fromUtf8("HAUPTSTRASSE")));
    EXPECT_FALSE(isFound(QStringLiteral("hello"), QStringLiteral("hell o")));
}

TEST(TextFolding, AccentsMatter)
{
    EXPECT_FALSE(isFound(QStringLiteral("cafe"), fromUtf8("ein Café")));
    EXPECT_FALSE(isFound(fromUtf8("café"), QStringLiteral("a cafe")));
    EXPECT_FALSE(isFound(fromUtf8("é"), fromUtf8("è")));
    EXPECT_TRUE(isFound(fromUtf8("CAFÉ"), fromUtf8("ein Café")));
}

TEST(TextFolding, AccentsAreTheSameHoweverTheyAreWritten)
{
    EXPECT_TRUE(isFound(fromUtf8("Cafe\u0301"), fromUtf8("café au lait")));
    EXPECT_TRUE(isFound(fromUtf8("CAFÉ"), fromUtf8("cafe\u0301 au lait")));
    EXPECT_FALSE(isFound(QStringLiteral("cafe"), fromUtf8("cafe\u0301 au lait")));
    // There is no single character for this letter.
    EXPECT_FALSE(isFound(QStringLiteral("q"), fromUtf8("Q\u0303")));
    EXPECT_TRUE(isFound(QStringLiteral("q"), fromUtf8("Q\u0303 and q")));
    EXPECT_TRUE(isFound(fromUtf8("q\u0303"), fromUtf8("Q\u0303")));
}

TEST(TextFolding, TurkishHasTwoLettersI)
{
    for (const char* locale : {"tr-TR", "tr", "az-AZ"}) {
        EXPECT_TRUE(isFound(fromUtf8("ırmak"), QStringLiteral("IRMAK"), locale));
        EXPECT_TRUE(isFound(QStringLiteral("istanbul"), fromUtf8("İSTANBUL"), locale));
        EXPECT_TRUE(isFound(QStringLiteral("istanbul"), fromUtf8("I\u0307STANBUL"), locale));
        EXPECT_FALSE(isFound(QStringLiteral("irmak"), QStringLiteral("IRMAK"), locale));
        EXPECT_FALSE(isFound(fromUtf8("ıstanbul"), fromUtf8("İSTANBUL"), locale));
    }
    EXPECT_TRUE(isFound(QStringLiteral("irmak"), QStringLiteral("IRMAK"), "en-US"));
    EXPECT_FALSE(isFound(fromUtf8("ırmak"), QStringLiteral("IRMAK"), "de-DE"));
}

TEST(TextFolding, BrokenTextDoesNotStopIt)
{
    const QString lone = QString(QChar(0xD800)) + QStringLiteral("abc") + QChar(0xDC00);
    EXPECT_TRUE(isFound(QStringLiteral("ABC"), lone));
    EXPECT_FALSE(isFound(lone, QStringLiteral("abc")));
    EXPECT_FALSE(isFound(QStringLiteral("a"), QString()));
}

} // namespace
} // namespace corvandi
