#include "text/letter_case.h"

#include <gtest/gtest.h>

#include <unicode/locid.h>

namespace corvandi {
namespace {

/// Makes Turkish the locale that ICU falls back on.
class TurkishDefault {
public:
    TurkishDefault()
    {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(icu::Locale("tr_TR"), status);
    }
    ~TurkishDefault()
    {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(before_, status);
    }
    TurkishDefault(const TurkishDefault&) = delete;
    TurkishDefault& operator=(const TurkishDefault&) = delete;

private:
    icu::Locale before_ = icu::Locale::getDefault();
};

TEST(LetterCase, IsThatOfNoLanguageInParticular)
{
    const TurkishDefault turkish;
    EXPECT_EQ(lowerCased(QStringLiteral("I")), QStringLiteral("i"));
    EXPECT_EQ(upperCased(QStringLiteral("i")), QStringLiteral("I"));
}

TEST(LetterCase, MayChangeTheLength)
{
    EXPECT_EQ(upperCased(QStringLiteral("ß")), QStringLiteral("SS"));
    EXPECT_EQ(lowerCased(QStringLiteral("İ")), QStringLiteral("i\u0307"));
}

TEST(LetterCase, KnowsTheFinalSigma)
{
    EXPECT_EQ(lowerCased(QStringLiteral("ΟΔΟΣ ΣΑΣ")), QStringLiteral("οδος σας"));
}

} // namespace
} // namespace corvandi
