#include "core/dictation/dictation_fixture.h"

namespace corvandi::testing {
namespace {

const QString words = QStringLiteral("go forward ten meters");
const QString longText = QString(20, QLatin1Char('a')) + QString(20, QLatin1Char('b'));

/// Between the decision to insert and the posting, and between two postings, the user goes somewhere else.
class PostingGateTest : public DictationFixture {
protected:
    PostingGateTest() { settings.setSaveHistory(true); }

    /// Runs after the first chunk of a text was posted.
    void afterFirstChunk(const std::function<void()>& action)
    {
        keyboard.onPost = [this, action] {
            if (keyboard.posted.size() == 2)
                action();
        };
        dictate(longText);
    }
    /// The first chunk is in the application, the rest on the clipboard.
    [[nodiscard]] bool wasStoppedOnTheWay()
    {
        return keyboard.typed() == longText.left(20) && pasteboard.text() == longText.mid(20) &&
               pasteboard.isMarked() && shows(HUDState::notice, "Saved to the clipboard. Press ⌘V to paste.");
    }
    /// Runs while the content of the clipboard is read.
    void pasteWhile(const std::function<void()>& action)
    {
        settings.setInsertion(InsertionMethod::paste);
        pasteboard.onRead = action;
        dictate(words);
    }
    [[nodiscard]] bool wentToTheClipboard()
    {
        return keyboard.posted.empty() && pasteboard.text() == words &&
               shows(HUDState::notice, "Saved to the clipboard. Press ⌘V to paste.");
    }
};

TEST_F(PostingGateTest, ASwitchToAnotherApplicationEndsTheTyping)
{
    afterFirstChunk([this] { workspace.frontmost = QStringLiteral("org.example.other"); });
    EXPECT_TRUE(wasStoppedOnTheWay());
}

TEST_F(PostingGateTest, AMoveIntoAPasswordFieldEndsTheTyping)
{
    afterFirstChunk([this] { focus.focusPasswordField(); });
    EXPECT_TRUE(wasStoppedOnTheWay());
}

TEST_F(PostingGateTest, ALockedScreenEndsTheTyping)
{
    afterFirstChunk([this] { lock.set(true); });
    EXPECT_EQ(keyboard.typed(), longText.left(20));
    EXPECT_EQ(pasteboard.text(), longText.mid(20));
    EXPECT_FALSE(panels.isVisible);
}

TEST_F(PostingGateTest, TheHistoryHasTheWholeText)
{
    afterFirstChunk([this] { focus.focusPasswordField(); });
    ASSERT_EQ(controller->store().history().size(), 1U);
    EXPECT_EQ(controller->store().history().front().text, longText);
}

TEST_F(PostingGateTest, ASwitchWhileTheClipboardIsReadPastesNothing)
{
    pasteWhile([this] { workspace.frontmost = QStringLiteral("org.example.other"); });
    EXPECT_TRUE(wentToTheClipboard());
}

TEST_F(PostingGateTest, APasswordFieldWhileTheClipboardIsReadGetsNothing)
{
    pasteWhile([this] { focus.focusPasswordField(); });
    EXPECT_TRUE(wentToTheClipboard());
}

TEST_F(PostingGateTest, APasswordFieldWhileTheKeysAreWaitedForGetsNothing)
{
    keyboard.keysAreFree = false;
    dictate(words);
    focus.focusPasswordField();
    keyboard.freeKeys();
    queue.drain();
    EXPECT_TRUE(wentToTheClipboard());
}

TEST_F(PostingGateTest, APasswordFieldThatTookTheFocusDuringTheRewriteGetsNothing)
{
    settings.setCleanUpSentences(true);
    dictate(words);
    focus.focusPasswordField();
    model.answer(words);
    queue.drain();
    EXPECT_TRUE(wentToTheClipboard());
}

TEST_F(PostingGateTest, AfterARewriteTheFocusIsAskedForAgain)
{
    settings.setCleanUpSentences(true);
    dictate(words);
    focus.refreshesAreHeld = true;
    model.answer(words);
    queue.drain();
    EXPECT_TRUE(keyboard.posted.empty());
    focus.focusPasswordField();
    focus.endRefreshes();
    queue.drain();
    EXPECT_TRUE(wentToTheClipboard());
}

TEST_F(PostingGateTest, AnElementThatIsNoTextFieldAfterTheRewriteIsNotTriedInTheFileManager)
{
    settings.setCleanUpSentences(true);
    workspace.frontmost = QStringLiteral("com.apple.finder");
    dictate(words);
    focus.element.reset();
    model.answer(words);
    queue.drain();
    EXPECT_TRUE(wentToTheClipboard());
}

class SessionLockTest : public DictationFixture {};

TEST_F(SessionLockTest, APressOnALockedScreenIsNotHeeded)
{
    lock.set(true);
    press();
    EXPECT_FALSE(controller->isDictating());
    EXPECT_FALSE(panels.isVisible);
    EXPECT_EQ(input.count("start"), 0);
    EXPECT_TRUE(log.contains(QStringLiteral("Corvandi: the session is locked; the hotkey was not heeded")));
}

TEST_F(SessionLockTest, LockingTheScreenEndsTheRecordingAndInsertsNothing)
{
    press();
    queue.advance(1s);
    lock.set(true);
    queue.drain();
    EXPECT_FALSE(controller->isDictating());
    EXPECT_FALSE(panels.isVisible);
    EXPECT_EQ(input.count("stop"), 1);
    recognise(words);
    EXPECT_TRUE(keyboard.posted.empty());
    EXPECT_EQ(pasteboard.text(), words);
    EXPECT_FALSE(panels.isVisible);
}

TEST_F(SessionLockTest, ALockThatNobodyAnnouncedStillKeepsTheTextOut)
{
    hold();
    lock.set(true);
    recognise(words);
    EXPECT_TRUE(keyboard.posted.empty());
    EXPECT_EQ(pasteboard.text(), words);
    EXPECT_FALSE(panels.isVisible);
}

TEST_F(SessionLockTest, UnlockingEndsNothing)
{
    press();
    queue.advance(1s);
    lock.set(false);
    queue.drain();
    EXPECT_TRUE(controller->isDictating());
    EXPECT_TRUE(panels.isVisible);
}

TEST_F(SessionLockTest, TheNextPressAfterUnlockingWorks)
{
    lock.set(true);
    press();
    lock.set(false);
    dictate(words);
    EXPECT_EQ(keyboard.typed(), words);
}

class BrokenSessionTest : public DictationFixture {};

TEST_F(BrokenSessionTest, ATextThatIsKnownGoesToTheHistoryAndTheClipboard)
{
    settings.setSaveHistory(true);
    keyboard.onPost = [] { throw std::runtime_error("the keyboard broke"); };
    dictate(words);
    EXPECT_EQ(pasteboard.text(), words);
    ASSERT_EQ(controller->store().history().size(), 1U);
    EXPECT_TRUE(shows(HUDState::notice, "Saved to the clipboard. Press ⌘V to paste."));
    EXPECT_TRUE(log.contains(QStringLiteral("Corvandi: the dictation broke off: the keyboard broke")));
    EXPECT_FALSE(log.contains(QStringLiteral("forward")));
}

TEST_F(BrokenSessionTest, SomethingThatIsNoErrorOfOursIsCaughtAsWell)
{
    keyboard.onPost = [] { throw 1; };
    dictate(words);
    EXPECT_EQ(pasteboard.text(), words);
    EXPECT_TRUE(log.contains(QStringLiteral("Corvandi: the dictation broke off: unknown error")));
}

TEST_F(BrokenSessionTest, WithoutATextTheUserIsTold)
{
    lock.onAsk = [this] {
        if (controller->isDictating() || input.count("stop") == 0)
            return;
        lock.onAsk = nullptr;
        throw std::runtime_error("the lock broke");
    };
    hold();
    EXPECT_TRUE(shows(HUDState::error, "Transcription failed."));
}

TEST_F(BrokenSessionTest, TheNextDictationIsNotPoisoned)
{
    keyboard.onPost = [] { throw std::runtime_error("the keyboard broke"); };
    dictate(words);
    keyboard.onPost = nullptr;
    keyboard.posted.clear();
    dictate(words);
    EXPECT_EQ(keyboard.typed(), words);
}

} // namespace
} // namespace corvandi::testing
