// How a dictation can end: what arrived, what the clipboard and the history hold, what the user was told.

#include "data_folder.h"
#include "good_enough.h"
#include "session.h"

#include "harness/clipboard.h"
#include "harness/windows.h"

#include <cstdlib>
#include <fstream>
#include <thread>

namespace corvandi::testing {
namespace {

using namespace harness;
using namespace std::chrono_literals;
using Kind = TargetApplication::Kind;

const char* const previously = "what the user had copied";
const char* const savedToClipboard = "Corvandi: Saved to the clipboard. Press ⌘V to paste.";

/// The text of a dictation that went to the clipboard and nowhere else.
void expectOnTheClipboard(const Recording& recording)
{
    const std::string text = clipboard::text().value_or(std::string());
    EXPECT_TRUE(saysWhatWasSaid(text, recording.reference));
    EXPECT_TRUE(clipboard::hasForm("org.nspasteboard.ConcealedType"));
    EXPECT_EQ(clipboard::contents("x-kde-passwordManagerHint"), "secret");
    EXPECT_TRUE(data_folder::waitForHistory({text}));
}

/// The time in which a hand gets from the Tab key to the hotkey. The program hears of a new focus some
/// milliseconds after the application itself.
void reachForTheHotkey()
{
    std::this_thread::sleep_for(300ms);
}

/// When the message has been faded in.
void keepPictureOfMessage(const Session& session)
{
    std::this_thread::sleep_for(500ms);
    session.keepScreenshot("message");
}

TEST(AnInsertedText, IsInTheHistoryAndLeavesTheClipboardAlone)
{
    Session session;
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    clipboard::copy(previously);
    const std::string text = session.dictate(recordings::goForward(), target);

    EXPECT_TRUE(saysWhatWasSaid(text, recordings::goForward().reference));
    EXPECT_TRUE(data_folder::waitForHistory({text}));
    EXPECT_EQ(clipboard::text(), previously);
}

TEST(APastedText, IsInTheHistoryAndGivesTheClipboardBackAfterASecond)
{
    Session session;
    writePreferences({"insertion=paste"});
    const TargetApplication target(Kind::gtkField, session.folder());
    session.startProgram();
    clipboard::copy(previously);
    const std::string text = session.dictate(recordings::goForward(), target);

    EXPECT_TRUE(saysWhatWasSaid(text, recordings::goForward().reference));
    EXPECT_TRUE(data_folder::waitForHistory({text}));
    EXPECT_TRUE(clipboard::waitForText(previously));
}

TEST(ATextToBePastedIntoATerminalThatCannotPaste, IsTyped)
{
    Session session;
    writePreferences({"insertion=paste"});
    const TargetApplication terminal(Kind::terminal, session.folder());
    session.startProgram();
    const std::string text = session.dictate(recordings::goForward(), terminal);

    EXPECT_TRUE(saysWhatWasSaid(text, recordings::goForward().reference));
}

TEST(AHistoryThatIsNotWanted, IsNotKept)
{
    Session session;
    writePreferences({"saveHistory=false"});
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    EXPECT_TRUE(
        saysWhatWasSaid(session.dictate(recordings::goForward(), target), recordings::goForward().reference));
    session.stopProgram();

    EXPECT_FALSE(std::filesystem::exists(data_folder::historyFile()));
}

TEST(TheHistory, IsOnTheDiskWhenTheProgramIsAskedToEndAndGoesOnInTheNextRun)
{
    Session session;
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    const std::string first = session.dictate(recordings::goForward(), target);
    session.stopProgram();
    EXPECT_EQ(data_folder::history(), std::vector{first});

    session.startProgram();
    const std::string second = session.dictate(recordings::digits(), target);
    EXPECT_TRUE(data_folder::waitForHistory({second, first}));
}

TEST(Silence, IsToldAndChangesNothing)
{
    Session session;
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    clipboard::copy(previously);
    session.pressHotkey();
    session.program().waitForLine("first audio");
    std::this_thread::sleep_for(1s);
    session.releaseHotkey();
    session.program().waitForLine("Corvandi: Didn't catch that.");
    keepPictureOfMessage(session);
    target.settle(session.keyboard());

    EXPECT_EQ(target.text(), "");
    EXPECT_EQ(clipboard::text(), previously);
    EXPECT_TRUE(data_folder::history().empty());
}

TEST(ATooShortPress, SaysAndKeepsNothing)
{
    Session session;
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    clipboard::copy(previously);
    session.pressHotkey();
    session.releaseHotkey();
    // A whole dictation afterwards: by then the short one has ended.
    const std::string text = session.dictate(recordings::digits(), target);

    EXPECT_EQ(target.text(), text);
    EXPECT_TRUE(data_folder::waitForHistory({text}));
    EXPECT_EQ(clipboard::text(), previously);
    EXPECT_FALSE(session.program().lineWith("Didn't catch that."));
}

TEST(SwitchingTheApplicationWhileSpeaking, LeavesTheTextOnTheClipboard)
{
    Session session;
    const TargetApplication other(Kind::terminal, session.folder());
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    session.pressHotkey();
    session.program().waitForLine("first audio");
    desktop::playToEnd(recordings::goForward().file);
    other.activate();
    session.releaseHotkey();
    session.program().waitForLine(savedToClipboard);
    keepPictureOfMessage(session);
    other.settle(session.keyboard());

    EXPECT_EQ(target.text(), "");
    EXPECT_EQ(other.text(), "");
    expectOnTheClipboard(recordings::goForward());
    // It stays there, unlike what a paste borrows.
    const std::string text = clipboard::text().value_or(std::string());
    std::this_thread::sleep_for(1500ms);
    EXPECT_EQ(clipboard::text(), text);
}

TEST(APasswordFieldAtThePress, IsRefused)
{
    Session session;
    const TargetApplication target(Kind::qtForm, session.folder());
    session.startProgram();
    clipboard::copy(previously);
    target.focusNext(session.keyboard());
    reachForTheHotkey();
    session.pressHotkey();
    session.program().waitForLine("Corvandi: Dictation isn't available in password fields.");
    keepPictureOfMessage(session);
    desktop::playToEnd(recordings::goForward().file);
    session.releaseHotkey();
    target.settle(session.keyboard());

    EXPECT_FALSE(session.program().lineWith("first audio"));
    EXPECT_EQ(target.text(), "");
    EXPECT_EQ(clipboard::text(), previously);
    EXPECT_TRUE(data_folder::history().empty());
}

TEST(APasswordFieldAtTheDelivery, GetsNothingAndNothingIsKept)
{
    Session session;
    // With Alt held, a click would move the window.
    writePreferences({"hotkeyControl=true", "hotkeyOption=false"});
    const TargetApplication target(Kind::qtForm, session.folder());
    session.startProgram();
    clipboard::copy(previously);
    session.keyboard().press(Key::leftControl);
    session.keyboard().press(Key::space);
    session.program().waitForLine("first audio");
    target.clickInTheMiddle();
    desktop::playToEnd(recordings::goForward().file);
    session.keyboard().release(Key::space);
    session.keyboard().release(Key::leftControl);
    session.program().waitForLine("Corvandi: Dictation isn't available in password fields.");
    target.settle(session.keyboard());

    EXPECT_EQ(target.text(), "");
    EXPECT_EQ(clipboard::text(), previously);
    EXPECT_TRUE(data_folder::history().empty());
}

TEST(AFileManagersIcons, AreNotTypedInto)
{
    Session session;
    const std::filesystem::path configuration(std::getenv("XDG_CONFIG_HOME"));
    std::filesystem::create_directories(configuration);
    std::ofstream(configuration / "mimeapps.list")
        << "[Default Applications]\ninode/directory=pcmanfm.desktop\n";
    const std::filesystem::path folder = session.folder() / "A folder";
    std::filesystem::create_directory(folder);
    std::ofstream(folder / "g.txt") << "a file that typing would find";
    const ChildProcess fileManager({"pcmanfm", "--no-desktop", folder.string()});
    ASSERT_TRUE(Windows().waitUntilActive("A folder"));
    session.startProgram();
    session.program().waitForLine(savedToClipboard, session.speak(recordings::goForward()));

    expectOnTheClipboard(recordings::goForward());
    EXPECT_FALSE(session.program().lineWith("text inserted"));
}

TEST(AButton, IsTriedAnyway)
{
    Session session;
    const TargetApplication target(Kind::qtForm, session.folder());
    session.startProgram();
    target.focusNext(session.keyboard());
    target.focusNext(session.keyboard());
    reachForTheHotkey();
    session.program().waitForLine("text inserted", session.speak(recordings::goForward()));
    target.settle(session.keyboard());

    EXPECT_EQ(target.text(), "");
    ASSERT_EQ(data_folder::history().size(), 1U);
    EXPECT_TRUE(saysWhatWasSaid(data_folder::history()[0], recordings::goForward().reference));
}

TEST(OptionThatIsHeldForAWhileAfterTheHotkey, DoesNotTurnTheTextIntoShortcuts)
{
    Session session;
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    session.pressHotkey();
    const size_t mark = session.program().mark();
    session.program().waitForLine("first audio");
    desktop::playToEnd(recordings::goForward().file);
    session.keyboard().release(Key::space);
    std::this_thread::sleep_for(1s);
    EXPECT_EQ(target.text(), "");
    session.keyboard().release(Key::leftAlt);
    session.program().waitForLine("text inserted", mark);

    EXPECT_TRUE(saysWhatWasSaid(target.waitForAddition(""), recordings::goForward().reference));
}

} // namespace
} // namespace corvandi::testing
