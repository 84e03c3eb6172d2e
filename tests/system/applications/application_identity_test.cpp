#include "system/applications/application_identity.h"

#include <gtest/gtest.h>

#include <unistd.h>

using namespace corvandi;

namespace {

FrontWindow windowOfClass(const char* windowClass)
{
    FrontWindow window;
    window.windowClass = QString::fromLatin1(windowClass);
    return window;
}

DesktopEntry entry(const char* id, const char* wmClass = "", const char* executable = "")
{
    DesktopEntry result;
    result.id = QString::fromLatin1(id);
    result.startupWmClass = QString::fromLatin1(wmClass);
    result.executable = QString::fromLatin1(executable);
    return result;
}

QString idOf(const FrontWindow& window, std::vector<DesktopEntry> entries, const QString& fileManager = {})
{
    return identify(window, DesktopIndex(std::move(entries), fileManager)).id;
}

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

} // namespace

TEST(ApplicationIdentity, TheApplicationIdentifierOfAWindowComesBeforeItsClass)
{
    FrontWindow window = windowOfClass("Editor");
    window.gtkApplicationId = text("org.example.TextEditor");
    EXPECT_EQ(idOf(window, {entry("editor", "Editor"), entry("org.example.TextEditor")}),
              text("org.example.TextEditor"));
    EXPECT_EQ(idOf(window, {}), text("org.example.TextEditor"));
}

TEST(ApplicationIdentity, AnApplicationIdentifierThatNoDesktopFileBearsYieldsToTheClass)
{
    FrontWindow window = windowOfClass("Editor");
    window.gtkApplicationId = text("org.example.TextEditor");
    EXPECT_EQ(idOf(window, {entry("editor", "Editor")}), text("editor"));
}

TEST(ApplicationIdentity, TheDeclaredClassComesBeforeFileNamesAndExecutables)
{
    const std::vector<DesktopEntry> entries{entry("writer"), entry("other", "", "writer"),
                                            entry("office-writer", "Writer")};
    EXPECT_EQ(idOf(windowOfClass("writer"), entries), text("office-writer"));
}

TEST(ApplicationIdentity, AClassIsFoundAmongFileNamesInAnyCaseOfLetters)
{
    EXPECT_EQ(idOf(windowOfClass("Mousepad"), {entry("other", "", "mousepad"), entry("mousepad")}),
              text("mousepad"));
}

TEST(ApplicationIdentity, AClassIsFoundAsTheLastPartOfAReversedDomainName)
{
    EXPECT_EQ(idOf(windowOfClass("Viewer"), {entry("org.example.viewer")}), text("org.example.viewer"));
}

TEST(ApplicationIdentity, AClassIsFoundAmongExecutables)
{
    EXPECT_EQ(idOf(windowOfClass("XTerm"), {entry("debian-xterm", "", "xterm")}), text("debian-xterm"));
}

TEST(ApplicationIdentity, AnEntryThatMenusShowComesBeforeOneThatTheyHide)
{
    DesktopEntry helper = entry("tool-url-handler", "Tool");
    helper.noDisplay = true;
    EXPECT_EQ(idOf(windowOfClass("Tool"), {helper, entry("tool", "Tool")}), text("tool"));
    EXPECT_EQ(idOf(windowOfClass("Tool"), {helper}), text("tool-url-handler"));
}

TEST(ApplicationIdentity, WithoutADesktopFileItIsTheExecutablesName)
{
    FrontWindow window = windowOfClass("Unknown");
    window.process = getpid();
    EXPECT_EQ(idOf(window, {}), text("workspace_tests"));
}

TEST(ApplicationIdentity, WithoutAProcessItIsTheBareClass)
{
    EXPECT_EQ(idOf(windowOfClass("Remote"), {}), text("Remote"));
}

TEST(ApplicationIdentity, AProcessThatHasEndedLeavesTheBareClass)
{
    FrontWindow window = windowOfClass("Gone");
    window.process = -1;
    EXPECT_EQ(idOf(window, {}), text("Gone"));
}

TEST(ApplicationIdentity, AWindowThatSaysNothingHasNoIdentity)
{
    EXPECT_TRUE(idOf(FrontWindow(), {entry("editor", "Editor")}).isEmpty());
}

TEST(ApplicationIdentity, TheDefaultHandlerOfFoldersIsTheFileManager)
{
    const std::vector<DesktopEntry> entries{entry("files", "Files"), entry("editor", "Editor")};
    EXPECT_EQ(idOf(windowOfClass("Files"), entries, text("files")), fileManagerIdentifier);
    EXPECT_EQ(idOf(windowOfClass("Editor"), entries, text("files")), text("editor"));
}

TEST(ApplicationIdentity, TheFileManagerIsKnownByItsApplicationIdentifierToo)
{
    FrontWindow window;
    window.gtkApplicationId = text("org.example.Files");
    EXPECT_EQ(idOf(window, {entry("org.example.Files")}, text("org.example.Files")), fileManagerIdentifier);
}

TEST(ApplicationIdentity, AHiddenEntryThatOpensFoldersStandsForTheProgramThatItStarts)
{
    DesktopEntry opener = entry("files-folder-handler", "", "files");
    opener.noDisplay = true;
    const std::vector<DesktopEntry> entries{opener, entry("files", "Files", "files"),
                                            entry("editor", "Editor", "editor")};
    EXPECT_EQ(idOf(windowOfClass("Files"), entries, opener.id), fileManagerIdentifier);
    EXPECT_EQ(idOf(windowOfClass("Editor"), entries, opener.id), text("editor"));
}

TEST(ApplicationIdentity, AnEntryThatOpensFoldersAndThatMenusShowStandsForItselfOnly)
{
    const std::vector<DesktopEntry> entries{entry("files", "Files", "runtime"),
                                            entry("game", "Game", "runtime")};
    EXPECT_EQ(idOf(windowOfClass("Game"), entries, text("files")), text("game"));
}

TEST(ApplicationIdentity, TheDesktopItselfIsTheFileManager)
{
    FrontWindow window = windowOfClass("Background");
    window.isDesktop = true;
    EXPECT_EQ(idOf(window, {entry("background", "Background")}), fileManagerIdentifier);
}

TEST(ApplicationIdentity, ATerminalIsKnownByItsCategory)
{
    DesktopEntry terminal = entry("console", "Console");
    terminal.categories = {text("System"), text("TerminalEmulator")};
    const DesktopIndex index({terminal, entry("editor", "Editor")}, {});
    EXPECT_EQ(identify(windowOfClass("Console"), index).kind, ApplicationKind::terminal);
    EXPECT_EQ(identify(windowOfClass("Editor"), index).kind, ApplicationKind::ordinary);
}

TEST(ApplicationIdentity, ATerminalWithoutADesktopFileIsKnownByItsClass)
{
    for (const char* windowClass : {"mlterm", "St-256color"})
        EXPECT_EQ(identify(windowOfClass(windowClass), {}).kind, ApplicationKind::terminal) << windowClass;
    EXPECT_EQ(identify(windowOfClass("Zenity"), {}).kind, ApplicationKind::ordinary);
}

TEST(ApplicationIdentity, ATerminalThatCannotPasteIsKnownByItsClassWithAndWithoutADesktopFile)
{
    for (const char* windowClass : {"XTerm", "UXTerm", "URxvt"})
        EXPECT_EQ(identify(windowOfClass(windowClass), {}).kind, ApplicationKind::terminalWithoutPaste);
    DesktopEntry xterm = entry("debian-xterm", "XTerm");
    xterm.categories = {text("TerminalEmulator")};
    EXPECT_EQ(identify(windowOfClass("XTerm"), DesktopIndex({xterm}, {})).kind,
              ApplicationKind::terminalWithoutPaste);
}
