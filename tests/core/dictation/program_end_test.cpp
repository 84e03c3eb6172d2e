#include "core/dictation/dictation_fixture.h"

namespace corvandi::testing {
namespace {

const QString words = QStringLiteral("go forward ten meters");

/// The program is told to end in one of the states of a dictation.
class ProgramEndTest : public DictationFixture {
protected:
    ProgramEndTest() { pasteboard.copyFromOutside(QStringLiteral("what the user had")); }
    ~ProgramEndTest() override
    {
        // The end can't outlive what it works on.
        queue.advance(1s);
    }

    void end()
    {
        ending.emplace(controller->shutDown());
        queue.drain();
    }
    [[nodiscard]] bool hasEnded() const { return ending && ending->isReady(); }
    [[nodiscard]] bool isSaved(const QString& text)
    {
        const auto& history = controller->store().history();
        return pasteboard.text() == text && pasteboard.isMarked() && history.size() == 1 &&
               history.front().text == text;
    }
    void rewriteSlowly(const QString& text)
    {
        settings.setCleanUpSentences(true);
        dictate(text);
        ASSERT_TRUE(model.isAsked());
    }

    std::optional<QCoro::Task<>> ending;
};

TEST_F(ProgramEndTest, WithNothingToDoItIsOverAtOnce)
{
    end();
    EXPECT_TRUE(hasEnded());
    EXPECT_EQ(queue.timerCount(), 0U);
}

TEST_F(ProgramEndTest, TheHotkeyIsLetGoAndNoPressIsHeard)
{
    controller->startHotkey();
    end();
    EXPECT_EQ(taps.watched, std::nullopt);
    press();
    EXPECT_FALSE(controller->isDictating());
    EXPECT_FALSE(panels.isVisible);
}

TEST_F(ProgramEndTest, ThePollForThePermissionEnds)
{
    controller->waitForAccessibilityThenStartHotkey();
    end();
    EXPECT_EQ(queue.timerCount(), 0U);
}

TEST_F(ProgramEndTest, WhatWasSaidWithTheKeyStillHeldIsTranscribedAndSaved)
{
    press();
    queue.advance(2s);
    end();
    EXPECT_FALSE(panels.isVisible);
    EXPECT_FALSE(controller->isDictating());
    EXPECT_FALSE(hasEnded());
    queue.advance(500ms);
    recognise(words);
    EXPECT_TRUE(hasEnded());
    EXPECT_TRUE(isSaved(words));
    EXPECT_TRUE(keyboard.posted.empty());
}

TEST_F(ProgramEndTest, APressThatWasTooShortIsForgotten)
{
    press();
    queue.advance(349ms);
    end();
    recognise(words);
    EXPECT_TRUE(hasEnded());
    EXPECT_EQ(pasteboard.text(), QStringLiteral("what the user had"));
    EXPECT_TRUE(controller->store().history().empty());
}

TEST_F(ProgramEndTest, ATranscriptThatIsBeingMadeIsSaved)
{
    hold();
    end();
    EXPECT_FALSE(panels.isVisible);
    recognise(words);
    EXPECT_TRUE(hasEnded());
    EXPECT_TRUE(isSaved(words));
}

TEST_F(ProgramEndTest, WhatIsRecognisedAfter600MillisecondsIsSaved)
{
    hold();
    engine.pushFinal(words);
    end();
    queue.advance(599ms);
    EXPECT_FALSE(hasEnded());
    queue.advance(1ms);
    EXPECT_TRUE(hasEnded());
    EXPECT_TRUE(isSaved(words));
}

TEST_F(ProgramEndTest, AMicrophoneThatHangsIsWaitedFor700MillisecondsAtMost)
{
    hold();
    input.removing.hold();
    press();
    queue.advance(1s);
    end();
    queue.advance(699ms);
    EXPECT_FALSE(hasEnded());
    queue.advance(1ms);
    EXPECT_TRUE(hasEnded());
    EXPECT_EQ(pasteboard.text(), QStringLiteral("what the user had"));
}

TEST_F(ProgramEndTest, AQuestionToTheModelIsGivenUpAndTheTextSavedAsItIs)
{
    rewriteSlowly(words);
    end();
    EXPECT_TRUE(hasEnded());
    EXPECT_EQ(model.sessions, 0);
    EXPECT_TRUE(isSaved(words));
    EXPECT_FALSE(panels.isVisible);
}

TEST_F(ProgramEndTest, TheFocusIsNotWaitedFor)
{
    focus.refreshesAreHeld = true;
    dictate(words);
    end();
    EXPECT_TRUE(hasEnded());
    EXPECT_TRUE(isSaved(words));
}

TEST_F(ProgramEndTest, FreeKeysAreNotWaitedFor)
{
    keyboard.keysAreFree = false;
    dictate(words);
    end();
    EXPECT_TRUE(hasEnded());
    EXPECT_TRUE(isSaved(words));
    EXPECT_TRUE(keyboard.posted.empty());
}

TEST_F(ProgramEndTest, ATextThatIsBeingTypedIsTypedToItsEnd)
{
    const QString text(100, QLatin1Char('a'));
    hold();
    engine.pushFinal(text);
    engine.endResults();
    keyboard.onPost = [this] {
        if (!ending)
            ending.emplace(controller->shutDown());
    };
    queue.drain();
    EXPECT_TRUE(hasEnded());
    EXPECT_EQ(keyboard.typed(), text);
    EXPECT_EQ(pasteboard.text(), QStringLiteral("what the user had"));
}

TEST_F(ProgramEndTest, WhatCannotBeTypedIn300MillisecondsGoesToTheClipboard)
{
    const QString text = QString(40, QLatin1Char('a')) + QString(40, QLatin1Char('b'));
    hold();
    engine.pushFinal(text);
    engine.endResults();
    keyboard.onPost = [this] {
        if (!ending)
            ending.emplace(controller->shutDown());
        if (keyboard.posted.size() == 4)
            queue.skip(301ms);
    };
    queue.drain();
    EXPECT_TRUE(hasEnded());
    EXPECT_EQ(keyboard.typed(), text.left(40));
    EXPECT_EQ(pasteboard.text(), text.mid(40));
    EXPECT_EQ(controller->store().history().front().text, text);
}

TEST_F(ProgramEndTest, ThePastedTextIsLeftToTheApplicationForAsLongAsPossible)
{
    settings.setInsertion(InsertionMethod::paste);
    dictate(words);
    queue.advance(400ms);
    end();
    queue.advance(599ms);
    EXPECT_EQ(pasteboard.text(), words);
    EXPECT_FALSE(hasEnded());
    queue.advance(1ms);
    EXPECT_TRUE(hasEnded());
    EXPECT_EQ(pasteboard.text(), QStringLiteral("what the user had"));
}

TEST_F(ProgramEndTest, ABorrowedClipboardIsBackAfter700MillisecondsAtTheLatest)
{
    settings.setInsertion(InsertionMethod::paste);
    dictate(words);
    end();
    queue.advance(700ms);
    EXPECT_TRUE(hasEnded());
    EXPECT_EQ(pasteboard.text(), QStringLiteral("what the user had"));
}

TEST_F(ProgramEndTest, WithoutAHistoryTheTextIsOnTheClipboardOnly)
{
    settings.setSaveHistory(false);
    rewriteSlowly(words);
    end();
    EXPECT_EQ(pasteboard.text(), words);
    EXPECT_TRUE(controller->store().history().empty());
}

TEST_F(ProgramEndTest, TwoDictationsAtOnceAreBothSaved)
{
    rewriteSlowly(words);
    press();
    queue.advance(1s);
    end();
    recognise(QStringLiteral("and back"));
    EXPECT_TRUE(hasEnded());
    const auto& history = controller->store().history();
    ASSERT_EQ(history.size(), 2U);
    EXPECT_EQ(history[0].text, QStringLiteral("and back"));
    EXPECT_EQ(history[1].text, words);
    EXPECT_EQ(pasteboard.text(), QStringLiteral("and back"));
}

} // namespace
} // namespace corvandi::testing
