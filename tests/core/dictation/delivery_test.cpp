#include "core/dictation/dictation_fixture.h"

namespace corvandi::testing {
namespace {

class DeliveryTest : public DictationFixture {
protected:
    void focusNothingKnown() { focus.element.reset(); }
    [[nodiscard]] bool isOnTheClipboard(const QString& text) const
    {
        return pasteboard.text() == text && pasteboard.isMarked();
    }
};

const QString words = QStringLiteral("Go forward ten meters.");
constexpr const char* saved = "Saved to the clipboard. Press ⌘V to paste.";

TEST_F(DeliveryTest, WhiteSpaceAroundTheTranscriptIsTrimmed)
{
    dictate(QStringLiteral(" \n\tGo on.\n "));
    EXPECT_EQ(keyboard.typed(), QStringLiteral("Go on."));
}

TEST_F(DeliveryTest, FinalResultsAreJoinedAsTheyAre)
{
    hold();
    engine.pushFinal(QStringLiteral("Hello"));
    engine.pushVolatile(QStringLiteral(" wor"));
    recognise(QStringLiteral(" world"));
    EXPECT_EQ(keyboard.typed(), QStringLiteral("Hello world"));
}

TEST_F(DeliveryTest, NothingRecognisedIsSaid)
{
    dictate(QStringLiteral("   "));
    EXPECT_TRUE(shows(HUDState::error, "Didn't catch that."));
    EXPECT_TRUE(nothingWasDelivered());
}

TEST_F(DeliveryTest, NothingRecognisedBecauseTheRecognitionBrokeIsSaidDifferently)
{
    dictateAndFail(QStringLiteral("   "));
    EXPECT_TRUE(shows(HUDState::error, "Transcription failed."));
    EXPECT_TRUE(nothingWasDelivered());
}

TEST_F(DeliveryTest, TheTextWaitsUntilTheApplicationHasSaidWhereTheFocusIs)
{
    focus.refreshesAreHeld = true;
    dictate(words);
    queue.advance(49ms);
    EXPECT_TRUE(shows(HUDState::processing, "Transcribing"));
    EXPECT_TRUE(nothingWasDelivered());
    focus.endRefreshes();
    queue.drain();
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(DeliveryTest, AMoveIntoAPasswordFieldThatIsHeardOfOnlyThenCounts)
{
    focus.refreshesAreHeld = true;
    dictate(words);
    focus.focusPasswordField();
    focus.endRefreshes();
    queue.drain();
    EXPECT_TRUE(shows(HUDState::notice, "Dictation isn't available in password fields."));
    EXPECT_TRUE(nothingWasDelivered());
}

TEST_F(DeliveryTest, AnApplicationThatDoesNotSayWhereTheFocusIsIsTakenAtItsLastWordAfter50Ms)
{
    focus.refreshesAreHeld = true;
    dictate(words);
    queue.advance(50ms);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(DeliveryTest, WithoutATextNobodyIsAskedForTheFocus)
{
    dictate(QStringLiteral("   "));
    EXPECT_EQ(focus.refreshes, 0);
}

TEST_F(DeliveryTest, APressWhileTheFocusIsAskedForLeavesTheTextOnItsWay)
{
    focus.refreshesAreHeld = true;
    dictate(words);
    press();
    focus.endRefreshes();
    queue.drain();
    EXPECT_EQ(face().state(), HUDState::recording);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(DeliveryTest, APartialTranscriptIsCopiedAndNeverInserted)
{
    dictateAndFail(words);
    EXPECT_TRUE(keyboard.posted.empty());
    EXPECT_TRUE(isOnTheClipboard(words));
    EXPECT_TRUE(shows(HUDState::error,
                      "Transcription incomplete. Partial text copied to the clipboard; press ⌘V to paste."));
}

TEST_F(DeliveryTest, APartialTranscriptThatCannotBeCopiedIsOnlySaidToBeIncomplete)
{
    pasteboard.acceptsText = false;
    dictateAndFail(words);
    EXPECT_TRUE(shows(HUDState::error, "Transcription incomplete."));
}

TEST_F(DeliveryTest, APasswordFieldAtDeliveryGetsNothingAndNothingIsCopied)
{
    hold();
    focus.focusPasswordField();
    recognise(words);
    EXPECT_TRUE(nothingWasDelivered());
    EXPECT_TRUE(shows(HUDState::notice, "Dictation isn't available in password fields."));
}

TEST_F(DeliveryTest, AfterAnInsertionTheHUDHidesIn150Milliseconds)
{
    dictate(words);
    EXPECT_TRUE(shows(HUDState::processing, "Inserting"));
    queue.advance(150ms - 1ns);
    EXPECT_TRUE(panels.isVisible);
    queue.advance(1ns);
    EXPECT_FALSE(panels.isVisible);
    EXPECT_EQ(queue.timerCount(), 0U);
}

TEST_F(DeliveryTest, TheSettingChoosesTheWayOfInsertion)
{
    settings.setInsertion(InsertionMethod::paste);
    dictate(words);
    EXPECT_EQ(pasteboard.text(), words);
    ASSERT_EQ(keyboard.posted.size(), 2U);
    EXPECT_EQ(keyboard.posted[0].virtualKey, 9);
}

TEST_F(DeliveryTest, SwitchingToAnotherApplicationLeavesTheTextOnTheClipboard)
{
    hold();
    workspace.frontmost = QStringLiteral("org.example.other");
    recognise(words);
    EXPECT_TRUE(keyboard.posted.empty());
    EXPECT_TRUE(isOnTheClipboard(words));
    EXPECT_TRUE(shows(HUDState::notice, saved));
    queue.advance(1800ms);
    EXPECT_FALSE(panels.isVisible);
}

TEST_F(DeliveryTest, ATargetThatIsGoneOrNewCountsAsSwitched)
{
    hold();
    workspace.frontmost.reset();
    recognise(words);
    EXPECT_TRUE(isOnTheClipboard(words));
    pasteboard = FakePasteboard();
    hold();
    workspace.frontmost = QStringLiteral("org.example.editor");
    recognise(words);
    EXPECT_TRUE(isOnTheClipboard(words));
    EXPECT_TRUE(keyboard.posted.empty());
}

TEST_F(DeliveryTest, ThisProgramItselfCountsAsNoTarget)
{
    workspace.frontmost = workspace.own;
    EXPECT_EQ(controller->currentTargetBundleID(), std::nullopt);
    focusNothingKnown();
    dictate(words);
    EXPECT_TRUE(isOnTheClipboard(words));
}

TEST_F(DeliveryTest, WithoutAnIdentifierOfItsOwnTheFrontmostOneIsTakenAsItIs)
{
    workspace.own.reset();
    workspace.frontmost = QStringLiteral("io.corvandi.Corvandi");
    EXPECT_EQ(controller->currentTargetBundleID(), QStringLiteral("io.corvandi.Corvandi"));
}

TEST_F(DeliveryTest, AnEditableElementOfThisProgramItselfGetsTheText)
{
    workspace.frontmost = workspace.own;
    dictate(words);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(DeliveryTest, AnUnknownElementOfAnApplicationIsTriedAnyway)
{
    focusNothingKnown();
    dictate(words);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(DeliveryTest, AnUnknownElementWithoutAnApplicationIsNotTried)
{
    focusNothingKnown();
    workspace.frontmost.reset();
    dictate(words);
    EXPECT_TRUE(keyboard.posted.empty());
    EXPECT_TRUE(isOnTheClipboard(words));
}

TEST_F(DeliveryTest, AnUnknownElementOfTheFileManagerIsNotTried)
{
    focusNothingKnown();
    workspace.frontmost = QStringLiteral("com.apple.finder");
    dictate(words);
    EXPECT_TRUE(keyboard.posted.empty());
    EXPECT_TRUE(isOnTheClipboard(words));
    EXPECT_TRUE(shows(HUDState::notice, saved));
}

TEST_F(DeliveryTest, AnEditableElementOfTheFileManagerGetsTheText)
{
    workspace.frontmost = QStringLiteral("com.apple.finder");
    dictate(words);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(DeliveryTest, AFailedInsertionLeavesTheTextOnTheClipboard)
{
    keyboard.hasSources = false;
    dictate(words);
    EXPECT_TRUE(isOnTheClipboard(words));
    EXPECT_TRUE(shows(HUDState::notice, saved));
}

TEST_F(DeliveryTest, ATextLeftOnTheClipboardStaysThere)
{
    pasteboard.copyFromOutside(QStringLiteral("abc"));
    keyboard.hasSources = false;
    dictate(words);
    queue.advance(10s);
    EXPECT_TRUE(isOnTheClipboard(words));
}

TEST_F(DeliveryTest, AClipboardThatRefusesIsReported)
{
    keyboard.hasSources = false;
    pasteboard.acceptsText = false;
    dictate(words);
    EXPECT_TRUE(shows(HUDState::error, "Couldn't copy to the clipboard (saved to history)."));
    settings.setSaveHistory(false);
    dictate(words);
    EXPECT_TRUE(shows(HUDState::error, "Couldn't copy to the clipboard."));
}

TEST_F(DeliveryTest, AMessageIsSkippedWhenANewerDictationHasBegunButTheTextIsKept)
{
    hold();
    workspace.frontmost = QStringLiteral("org.example.other");
    press();
    recognise(words);
    EXPECT_EQ(face().state(), HUDState::recording);
    EXPECT_TRUE(isOnTheClipboard(words));
}

TEST_F(DeliveryTest, TypingWaitsUntilTheFingersHaveLeftTheModifiers)
{
    keyboard.keysAreFree = false;
    dictate(words);
    EXPECT_TRUE(keyboard.posted.empty());
    queue.advance(1s);
    keyboard.freeKeys();
    queue.drain();
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(DeliveryTest, ModifiersThatStayDownAreWaitedForTwoSecondsAtMost)
{
    keyboard.keysAreFree = false;
    dictate(words);
    queue.advance(2s - 1ns);
    EXPECT_TRUE(keyboard.posted.empty());
    queue.advance(1ns);
    EXPECT_EQ(keyboard.typed(), words);
    EXPECT_FALSE(keyboard.isAwaited());
}

TEST_F(DeliveryTest, AltOrSuperThatStaysDownIsAnOpenSwitcherAndTheTextGoesToTheClipboard)
{
    for (const uint64_t flag : {modifier_flags::option, modifier_flags::command}) {
        keyboard.keysAreFree = false;
        keyboard.held = flag;
        dictate(words);
        queue.advance(2s);
        EXPECT_TRUE(keyboard.posted.empty());
        EXPECT_TRUE(isOnTheClipboard(words));
        keyboard.freeKeys();
    }
}

TEST_F(DeliveryTest, ShiftOrControlThatStaysDownIsLetGoOfForTheText)
{
    keyboard.keysAreFree = false;
    keyboard.held = modifier_flags::shift | modifier_flags::control;
    dictate(words);
    queue.advance(2s);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(DeliveryTest, TheModifiersOfANewerDictationAreNotWaitedFor)
{
    keyboard.keysAreFree = false;
    hold();
    press();
    recognise(words);
    EXPECT_EQ(keyboard.typed(), words);
    EXPECT_EQ(input.count("start"), 2);
}

TEST_F(DeliveryTest, APressEndsTheWaitForTheModifiers)
{
    keyboard.keysAreFree = false;
    dictate(words);
    EXPECT_TRUE(keyboard.posted.empty());
    press();
    EXPECT_EQ(keyboard.typed(), words);
    EXPECT_EQ(input.count("start"), 2);
}

TEST_F(DeliveryTest, EveryOutcomeIsLoggedWithoutTheText)
{
    dictate(QString());
    hold();
    workspace.frontmost.reset();
    recognise(words);
    EXPECT_TRUE(log.contains(QStringLiteral("Corvandi: Didn't catch that.")));
    EXPECT_TRUE(log.contains(QStringLiteral("Corvandi: Saved to the clipboard. Press ⌘V to paste.")));
    EXPECT_FALSE(log.contains(QStringLiteral("forward")));
}

TEST_F(DeliveryTest, AnApplicationSwitchedToWithTheModifierStillHeldGetsNothing)
{
    keyboard.keysAreFree = false;
    dictate(words);
    workspace.frontmost = QStringLiteral("org.example.other");
    keyboard.freeKeys();
    queue.drain();
    EXPECT_TRUE(keyboard.posted.empty());
    EXPECT_TRUE(isOnTheClipboard(words));
}

} // namespace
} // namespace corvandi::testing
