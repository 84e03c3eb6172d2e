#include "base/locale.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

Locale currentWith(const char* name)
{
    qputenv("LC_ALL", name);
    return Locale::current();
}

TEST(Locale, TheEnvironmentsNameBecomesABcp47Identifier)
{
    EXPECT_EQ(currentWith("de_DE.UTF-8").bcp47(), QStringLiteral("de-DE"));
    EXPECT_EQ(currentWith("sr_RS@latin").bcp47(), QStringLiteral("sr-RS"));
}

TEST(Locale, AnEnvironmentWithoutALanguageMeansAmericanEnglish)
{
    EXPECT_EQ(currentWith("C").bcp47(), QStringLiteral("en-US"));
    EXPECT_EQ(currentWith("C.UTF-8").bcp47(), QStringLiteral("en-US"));
    EXPECT_EQ(currentWith("POSIX").bcp47(), QStringLiteral("en-US"));
}

TEST(Locale, ATagIsTakenInAnyLetterCase)
{
    EXPECT_EQ(Locale::fromTag(QStringLiteral("en-US")), Locale(QStringLiteral("en-US")));
    EXPECT_EQ(Locale::fromTag(QStringLiteral("EN-gb")), Locale(QStringLiteral("en-GB")));
    EXPECT_EQ(Locale::fromTag(QStringLiteral("de")), Locale(QStringLiteral("de")));
}

TEST(Locale, WhatIsNoTagNamesNoLocale)
{
    for (const char* text : {"", " ", "english", "en-US!", "American English", "und", "xx-YY", "-", "C"})
        EXPECT_EQ(Locale::fromTag(QLatin1String(text)), std::nullopt) << text;
}

TEST(Locale, TellsItsLanguageCode)
{
    EXPECT_EQ(Locale(QStringLiteral("en-AU")).languageCode(), QStringLiteral("en"));
    EXPECT_EQ(Locale(QStringLiteral("")).languageCode(), std::nullopt);
}

TEST(Locale, NamesKnownLanguagesInItsOwn)
{
    EXPECT_EQ(Locale(QStringLiteral("en-US")).localizedString(QStringLiteral("de_DE")),
              QStringLiteral("German (Germany)"));
    EXPECT_EQ(Locale(QStringLiteral("de-DE")).localizedString(QStringLiteral("en_US")),
              QStringLiteral("Englisch (Vereinigte Staaten)"));
}

TEST(Locale, HasNoNameForAnUnknownLanguage)
{
    EXPECT_EQ(Locale(QStringLiteral("en-US")).localizedString(QStringLiteral("xx_YY")), std::nullopt);
}

} // namespace
} // namespace corvandi
