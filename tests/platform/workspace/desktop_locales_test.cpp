#include "platform/linux/workspace/desktop_locales.h"

#include <gtest/gtest.h>

using namespace corvandi;

namespace {

std::string localesOf(const char* name)
{
    return desktopLocales(QString::fromLatin1(name)).join(QLatin1Char(' ')).toStdString();
}

} // namespace

TEST(DesktopLocales, TheMostSpecificComesFirst)
{
    EXPECT_EQ(localesOf("sr_RS.UTF-8@latin"), "sr_RS@latin sr_RS sr@latin sr");
    EXPECT_EQ(localesOf("de_AT.UTF-8"), "de_AT de");
    EXPECT_EQ(localesOf("ca@valencia"), "ca@valencia ca");
    EXPECT_EQ(localesOf("en"), "en");
}

TEST(DesktopLocales, WithoutALanguageThereAreNone)
{
    EXPECT_EQ(localesOf(""), "");
    EXPECT_EQ(localesOf("C"), "");
    EXPECT_EQ(localesOf("C.UTF-8"), "");
    EXPECT_EQ(localesOf("POSIX"), "");
}
