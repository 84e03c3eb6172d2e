#include "system/desktop/desktop_system_settings.h"

#include "support/event_loop.h"
#include "system/files/real_folder.h"

#include <gmock/gmock.h>

#include <QCoreApplication>

#include <memory>

namespace corvandi {
namespace {

using testing::contentOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::waitUntil;

const QString accessibilityNote = QStringLiteral("Look for “Accessibility” in your desktop's settings.");

class DesktopSystemSettingsTest : public ::testing::Test {
protected:
    /// Puts a program there that writes its name and arguments into the file "opened".
    void install(const char* name, const char* lastLine = "")
    {
        const QByteArray part = QFile::encodeName(opened + QStringLiteral(".part"));
        folder.put(folder.path(name), "#!/bin/sh\necho \"$(basename \"$0\") $*\" > '" + part + "'\nmv '" +
                                          part + "' '" + QFile::encodeName(opened) + "'\n" + lastLine);
        testing::setMode(folder.path(name), 0755);
    }
    void openOn(const char* desktops, SystemSettingsPage page = SystemSettingsPage::accessibility)
    {
        DesktopSystemSettings settings(QString::fromLatin1(desktops).split(QLatin1Char(':')),
                                       [this](const QString& note) { notes.push_back(note); },
                                       {folder.path()});
        settings.open(page);
    }
    [[nodiscard]] QByteArray whatWasOpened() const
    {
        return waitUntil([this] { return QFile::exists(opened); }) ? contentOf(opened) : QByteArray();
    }

    int argumentCount = 0;
    QCoreApplication application{argumentCount, nullptr};
    testing::RealFolder folder;
    const QString opened = folder.path("opened");
    std::vector<QString> notes;
};

TEST_F(DesktopSystemSettingsTest, TheDesktopsOwnProgramShowsThePage)
{
    install("gnome-control-center");
    install("xfce4-accessibility-settings");
    openOn("ubuntu:GNOME");
    EXPECT_EQ(whatWasOpened(), "gnome-control-center universal-access\n");
    EXPECT_THAT(notes, IsEmpty());
}

TEST_F(DesktopSystemSettingsTest, TheOlderProgramStandsInForTheNewerOne)
{
    install("systemsettings5");
    openOn("KDE");
    EXPECT_EQ(whatWasOpened(), "systemsettings5 kcm_access\n");
    EXPECT_THAT(notes, IsEmpty());
}

TEST_F(DesktopSystemSettingsTest, OpeningDoesNotWaitForTheProgram)
{
    install("xfce4-accessibility-settings", "sleep 5\n");
    const auto before = std::chrono::steady_clock::now();
    openOn("XFCE");
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(2));
    EXPECT_EQ(whatWasOpened(), "xfce4-accessibility-settings \n");
}

TEST_F(DesktopSystemSettingsTest, AProgramThatIsNotInstalledIsReplacedByWords)
{
    install("xfce4-accessibility-settings");
    openOn("GNOME");
    EXPECT_THAT(notes, ElementsAre(accessibilityNote));
    EXPECT_FALSE(QFile::exists(opened));
}

TEST_F(DesktopSystemSettingsTest, AProgramThatCantBeStartedIsReplacedByWords)
{
    folder.put(folder.path("gnome-control-center"), "#!/no/such/interpreter\n");
    testing::setMode(folder.path("gnome-control-center"), 0755);
    openOn("GNOME");
    EXPECT_THAT(notes, ElementsAre(accessibilityNote));
}

TEST_F(DesktopSystemSettingsTest, ADesktopThatIsNotKnownGetsWords)
{
    openOn("");
    openOn("LXQt");
    EXPECT_THAT(notes, ElementsAre(accessibilityNote, accessibilityNote));
}

TEST_F(DesktopSystemSettingsTest, TheLanguageModelHasNoPageAnywhere)
{
    install("gnome-control-center");
    openOn("GNOME", SystemSettingsPage::languageModel);
    EXPECT_THAT(notes, ElementsAre(QStringLiteral(
                           "Start a language model server on this computer, then come back here.")));
    EXPECT_FALSE(QFile::exists(opened));
}

TEST_F(DesktopSystemSettingsTest, TheEnvironmentNamesTheDesktops)
{
    const QByteArray before = qgetenv("XDG_CURRENT_DESKTOP");
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    EXPECT_THAT(DesktopSystemSettings::desktopsFromEnvironment(),
                ElementsAre(QStringLiteral("ubuntu"), QStringLiteral("GNOME")));
    qunsetenv("XDG_CURRENT_DESKTOP");
    EXPECT_THAT(DesktopSystemSettings::desktopsFromEnvironment(), IsEmpty());
    qputenv("XDG_CURRENT_DESKTOP", before);
}

} // namespace
} // namespace corvandi
