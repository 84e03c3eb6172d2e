#include "system/desktop/autostart_login_item.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using ::testing::HasSubstr;

std::string entryFor(const char* program)
{
    return startingEntry(QString::fromUtf8(program)).toStdString();
}

bool starts(const char* keys)
{
    return startsAtLogin(QByteArray("[Desktop Entry]\nType=Application\nName=x\n") + keys);
}

TEST(AutostartEntry, NamesTheProgramInQuotes)
{
    EXPECT_EQ(entryFor("/usr/bin/corvandi"), "[Desktop Entry]\n"
                                             "Type=Application\n"
                                             "Name=Corvandi\n"
                                             "TryExec=/usr/bin/corvandi\n"
                                             "Exec=\"/usr/bin/corvandi\"\n"
                                             "Icon=io.corvandi.Corvandi\n"
                                             "Terminal=false\n"
                                             "X-GNOME-Autostart-enabled=true\n");
}

TEST(AutostartEntry, QuotesWhatIsSpecialInACommandLineAndInAValue)
{
    EXPECT_THAT(entryFor("/my programs/ö"), HasSubstr("Exec=\"/my programs/ö\"\n"));
    EXPECT_THAT(entryFor("/a\"b"), HasSubstr(R"(Exec="/a\\"b")"
                                             "\n"));
    EXPECT_THAT(entryFor("/a`b"), HasSubstr(R"(Exec="/a\\`b")"
                                            "\n"));
    EXPECT_THAT(entryFor("/a$b"), HasSubstr(R"(Exec="/a\\$b")"
                                            "\n"));
    EXPECT_THAT(entryFor("/a\\b"), HasSubstr(R"(Exec="/a\\\\b")"
                                             "\n"));
    EXPECT_THAT(entryFor("/100%f"), HasSubstr("Exec=\"/100%%f\"\n"));
    EXPECT_THAT(entryFor("/a\nHidden=true\r\t"), HasSubstr(R"(Exec="/a\nHidden=true\r\t")"
                                                           "\n"));
}

TEST(AutostartEntry, OneThatNamesTheProgramStartsIt)
{
    EXPECT_TRUE(startsAtLogin(startingEntry(QStringLiteral("/usr/bin/corvandi"))));
    EXPECT_TRUE(starts("Exec=corvandi\n"));
    EXPECT_TRUE(starts("Exec=corvandi\nHidden=false\nX-GNOME-Autostart-enabled=true\n"));
}

TEST(AutostartEntry, OneThatIsHiddenOrSwitchedOffDoesNot)
{
    EXPECT_FALSE(startsAtLogin(hiddenEntry()));
    EXPECT_FALSE(starts("Exec=corvandi\nHidden=true\n"));
    EXPECT_FALSE(starts("Exec=corvandi\nX-GNOME-Autostart-enabled=false\n"));
}

TEST(AutostartEntry, WhatIsNoneStartsNothing)
{
    EXPECT_FALSE(startsAtLogin({}));
    EXPECT_FALSE(starts(""));
    EXPECT_FALSE(starts("Exec=\n"));
    EXPECT_FALSE(starts("[Desktop Action new]\nExec=corvandi\n"));
}

} // namespace
} // namespace corvandi
