#include "shell/updates/version.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

Version version(const char* text)
{
    return Version::parse(QString::fromUtf8(text)).value();
}

TEST(Version, IsOrderedByItsNumbersFromTheFront)
{
    struct Case {
        const char* older;
        const char* newer;
    };
    const Case cases[] = {
        {"1.0", "1.1"},      {"1.9", "1.10"},  {"1.2", "1.2.1"},         {"1.99.99", "2"},
        {"0.9.9", "1.0"},    {"0", "0.0.0.1"}, {"1.2.0.0.1", "1.2.1"},   {"9", "10"},
        {"1.09", "1.10"},    {"12", "12.4"},   {"1.0.0", "1.0.0.0.0.1"}, {"1.999999998", "1.999999999"},
        {"2025.1", "2026.1"}};
    for (const Case& pair : cases) {
        EXPECT_LT(version(pair.older), version(pair.newer)) << pair.older << " < " << pair.newer;
        EXPECT_GT(version(pair.newer), version(pair.older)) << pair.newer << " > " << pair.older;
    }
}

TEST(Version, MissingPartsAndLeadingZerosCountAsNothing)
{
    EXPECT_EQ(version("1.2"), version("1.2.0"));
    EXPECT_EQ(version("0"), version("0.0.0"));
    EXPECT_EQ(version("1.02"), version("1.2"));
    EXPECT_NE(version("1.2"), version("1.0.2"));
}

TEST(Version, KeepsItsSpelling)
{
    EXPECT_EQ(version("1.2.0").text(), QStringLiteral("1.2.0"));
}

TEST(Version, IsNothingElseThanNumbersWithDots)
{
    const char* const texts[] = {"",           ".",
                                 "1.",         ".1",
                                 "1..2",       "v1.2",
                                 "1.2-beta",   "1,2",
                                 "-1",         "+1",
                                 " 1",         "1 ",
                                 "1.2\n",      "0x10",
                                 "1e3",        "nan",
                                 "१.२",        "1.2.3.4.5.6.7.8.9",
                                 "1234567890", "99999999999999999999"};
    for (const char* text : texts)
        EXPECT_FALSE(Version::parse(QString::fromUtf8(text))) << text;
    EXPECT_FALSE(Version::parse(QString(1'000'000, u'.')));
}

} // namespace
} // namespace corvandi
