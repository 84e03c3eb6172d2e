#include "system/desktop/desktop_system_settings.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

SettingsCommand command(const char* program, const QStringList& arguments = {})
{
    return {QString::fromLatin1(program), arguments};
}

auto settingsOf(const char* desktops)
{
    return accessibilitySettings(QString::fromLatin1(desktops).split(QLatin1Char(':')));
}

const SettingsCommand gnome = command("gnome-control-center", {QStringLiteral("universal-access")});

TEST(SettingsCommands, EachDesktopHasItsOwn)
{
    EXPECT_THAT(settingsOf("GNOME"), ElementsAre(gnome));
    EXPECT_THAT(settingsOf("XFCE"), ElementsAre(command("xfce4-accessibility-settings")));
    EXPECT_THAT(settingsOf("MATE"), ElementsAre(command("mate-at-properties")));
    EXPECT_THAT(settingsOf("X-Cinnamon"),
                ElementsAre(command("cinnamon-settings", {QStringLiteral("accessibility")})));
}

TEST(SettingsCommands, TheNewerOfTwoComesFirst)
{
    const QStringList page{QStringLiteral("kcm_access")};
    EXPECT_THAT(settingsOf("KDE"),
                ElementsAre(command("systemsettings", page), command("systemsettings5", page)));
}

TEST(SettingsCommands, ADerivedDesktopHasThatOfTheOneItDerivesFrom)
{
    EXPECT_THAT(settingsOf("ubuntu:GNOME"), ElementsAre(gnome));
    EXPECT_THAT(settingsOf("Budgie:GNOME"),
                ElementsAre(command("budgie-control-center", {QStringLiteral("universal-access")}), gnome));
}

TEST(SettingsCommands, LetterCaseDoesNotMatter)
{
    EXPECT_THAT(settingsOf("gnome"), ElementsAre(gnome));
}

TEST(SettingsCommands, ADesktopThatIsNotKnownHasNone)
{
    EXPECT_THAT(settingsOf("LXQt"), IsEmpty());
    EXPECT_THAT(settingsOf("GNOME-like"), IsEmpty());
    EXPECT_THAT(accessibilitySettings({}), IsEmpty());
}

} // namespace
} // namespace corvandi
