#include "core/dictation/dictation_fixture.h"

namespace corvandi::testing {
namespace {

/// Dictations with the switch for clean sentences.
class RewriteDeliveryTest : public DictationFixture {
protected:
    RewriteDeliveryTest() { settings.setCleanUpSentences(true); }

    void answer(const char* text)
    {
        model.answer(QString::fromUtf8(text));
        queue.drain();
    }
};

const QString words = QStringLiteral("so um we goes home, Ann.");

TEST_F(RewriteDeliveryTest, TheRewrittenTextIsInsertedAndKept)
{
    dictate(words);
    EXPECT_TRUE(shows(HUDState::processing, "Polishing"));
    EXPECT_TRUE(nothingWasDelivered());
    answer("So, we went home, Ann.");
    EXPECT_EQ(keyboard.typed(), QStringLiteral("So, we went home, Ann."));
    ASSERT_EQ(controller->store().history().size(), 1U);
    EXPECT_EQ(controller->store().history()[0].text, QStringLiteral("So, we went home, Ann."));
}

TEST_F(RewriteDeliveryTest, WithTheSwitchOffTheModelIsNotEvenAskedWhetherItIsThere)
{
    settings.setCleanUpSentences(false);
    dictate(words);
    EXPECT_EQ(model.looks, 0);
    EXPECT_EQ(model.warmUps, 0);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(RewriteDeliveryTest, TheModelIsWarmedUpFromThePressOn)
{
    press();
    EXPECT_EQ(model.warmUps, 1);
    queue.advance(1s);
    release();
    recognise(words);
    EXPECT_EQ(model.warmUps, 1);
}

TEST_F(RewriteDeliveryTest, ARefusedPressIsNoReasonToWarmTheModelUp)
{
    focus.focusPasswordField();
    press();
    EXPECT_EQ(model.warmUps, 0);
}

TEST_F(RewriteDeliveryTest, AModelOfWhichNothingIsKnownYetIsNotWaitedFor)
{
    model.looksAreHeld = true;
    dictate(words);
    EXPECT_TRUE(model.prompts.empty());
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(RewriteDeliveryTest, AModelThatIsStillLoadedServesTheNextDictation)
{
    model.state = LanguageModelAvailability::modelNotReady;
    dictate(words);
    EXPECT_TRUE(model.prompts.empty());
    EXPECT_EQ(keyboard.typed(), words);
    model.state = LanguageModelAvailability::available;
    dictate(words);
    EXPECT_EQ(model.prompts.size(), 1U);
}

TEST_F(RewriteDeliveryTest, TheNextDictationWaitsForOneThatIsRewritten)
{
    dictate(words);
    press();
    EXPECT_EQ(input.count("start"), 1);
    answer("So, we went home, Ann.");
    EXPECT_EQ(input.count("start"), 2);
}

TEST_F(RewriteDeliveryTest, ASwitchThatGoesOnWhileTheTranscriptIsAwaitedCounts)
{
    settings.setCleanUpSentences(false);
    hold();
    settings.setCleanUpSentences(true);
    // As the pane does with its switch.
    model.warmUp();
    recognise(words);
    EXPECT_TRUE(shows(HUDState::processing, "Polishing"));
}

TEST_F(RewriteDeliveryTest, WithoutTheModelTheTextIsInsertedAsItIs)
{
    model.state = LanguageModelAvailability::otherReason;
    dictate(words);
    EXPECT_TRUE(model.prompts.empty());
    EXPECT_EQ(keyboard.typed(), words);
    EXPECT_FALSE(face().statusText() == QStringLiteral("Polishing"));
}

TEST_F(RewriteDeliveryTest, PunctuationIsKeptForTheRewriteWhateverTheSetting)
{
    settings.setAutoPunctuation(false);
    dictate(words);
    ASSERT_EQ(model.prompts.size(), 1U);
    EXPECT_EQ(model.prompts[0], words);
}

TEST_F(RewriteDeliveryTest, PunctuationIsStrippedWhenTheModelIsNotThere)
{
    settings.setAutoPunctuation(false);
    model.state = LanguageModelAvailability::modelNotReady;
    dictate(words);
    EXPECT_EQ(keyboard.typed(), QStringLiteral("so um we goes home ann"));
}

TEST_F(RewriteDeliveryTest, TheModelGetsTheTextAfterVocabularyAndFillers)
{
    settings.setRemoveDisfluencies(true);
    controller->store().addVocab(QStringLiteral("ann"), QStringLiteral("Anne"), vocab_scope::Global{});
    dictate(words);
    ASSERT_EQ(model.prompts.size(), 1U);
    EXPECT_EQ(model.prompts[0], QStringLiteral("so we goes home, Anne."));
}

TEST_F(RewriteDeliveryTest, AFailedRewriteKeepsTheText)
{
    dictate(words);
    model.answer(LanguageModelFailure{QStringLiteral("it refused")});
    queue.drain();
    EXPECT_EQ(keyboard.typed(), words);
    EXPECT_EQ(controller->store().history()[0].text, words);
}

TEST_F(RewriteDeliveryTest, HalfACharacterInTheAnswerBecomesTheReplacementCharacter)
{
    dictate(words);
    model.answer(QStringLiteral("So, we went home ") + QChar(0xD83D));
    queue.drain();
    EXPECT_EQ(keyboard.typed(), QStringLiteral("So, we went home \uFFFD"));
}

TEST_F(RewriteDeliveryTest, AnAnswerHasNoLineBreaksThatNobodyDictated)
{
    dictate(words);
    answer("So,\nwe went \r\n\r\n home,\u2028Ann.\u0085Yes.\u000b\u000cNo.");
    EXPECT_EQ(keyboard.typed(), QStringLiteral("So, we went home, Ann. Yes. No."));
}

TEST_F(RewriteDeliveryTest, WhereLineBreaksWereDictatedAnAnswerMayHaveThem)
{
    controller->store().addVocab(QStringLiteral("home"), QStringLiteral("home\nagain"),
                                 vocab_scope::Global{});
    dictate(words);
    answer("So, we went home\nagain, Ann.");
    EXPECT_EQ(keyboard.typed(), QStringLiteral("So, we went home\nagain, Ann."));
}

TEST_F(RewriteDeliveryTest, AnAnswerThreeTimesAsLongIsTaken)
{
    const QString answered(3 * words.size(), QLatin1Char('a'));
    dictate(words);
    model.answer(answered);
    queue.drain();
    EXPECT_EQ(keyboard.typed(), answered);
}

TEST_F(RewriteDeliveryTest, ALongerAnswerIsNot)
{
    dictate(words);
    model.answer(QString(3 * words.size() + 1, QLatin1Char('a')));
    queue.drain();
    EXPECT_EQ(keyboard.typed(), words);
    EXPECT_EQ(controller->store().history()[0].text, words);
}

TEST_F(RewriteDeliveryTest, AWordMayBecomeASentenceOf40Characters)
{
    dictate(QStringLiteral("yes"));
    model.answer(QString(40, QLatin1Char('a')));
    queue.drain();
    dictate(QStringLiteral("no"));
    model.answer(QString(41, QLatin1Char('b')));
    queue.drain();
    EXPECT_EQ(keyboard.typed(), QString(40, QLatin1Char('a')) + QStringLiteral("no"));
}

TEST_F(RewriteDeliveryTest, AnAnswerAfterFourSecondsIsNotWaitedFor)
{
    dictate(words);
    queue.advance(4s - 1ns);
    EXPECT_TRUE(nothingWasDelivered());
    queue.advance(1ns);
    EXPECT_EQ(keyboard.typed(), words);
}

TEST_F(RewriteDeliveryTest, APartialTranscriptIsNeverRewritten)
{
    dictateAndFail(words);
    EXPECT_TRUE(model.prompts.empty());
    EXPECT_EQ(pasteboard.text(), words);
}

TEST_F(RewriteDeliveryTest, APartialTranscriptKeepsThePunctuationThatARewriteWouldHaveNeeded)
{
    settings.setAutoPunctuation(false);
    dictateAndFail(words);
    EXPECT_EQ(pasteboard.text(), words);
}

TEST_F(RewriteDeliveryTest, NothingIsSentFromAPasswordField)
{
    hold();
    focus.focusPasswordField();
    recognise(words);
    EXPECT_TRUE(model.prompts.empty());
    EXPECT_TRUE(controller->store().history().empty());
}

TEST_F(RewriteDeliveryTest, ANewerDictationIsNotDisturbedAndTheTextStillArrives)
{
    dictate(words);
    press();
    answer("So, we went home, Ann.");
    EXPECT_EQ(face().state(), HUDState::recording);
    EXPECT_EQ(keyboard.typed(), QStringLiteral("So, we went home, Ann."));
}

TEST_F(RewriteDeliveryTest, TheWordForTheRewriteIsSkippedWhenANewerDictationHasBegun)
{
    hold();
    press();
    recognise(words);
    EXPECT_EQ(model.prompts.size(), 1U);
    EXPECT_EQ(face().state(), HUDState::recording);
}

TEST_F(RewriteDeliveryTest, SwitchingTheApplicationWhileTheModelWorksLeavesTheTextOnTheClipboard)
{
    dictate(words);
    workspace.frontmost = QStringLiteral("org.example.other");
    answer("So, we went home, Ann.");
    EXPECT_EQ(pasteboard.text(), QStringLiteral("So, we went home, Ann."));
    EXPECT_TRUE(keyboard.posted.empty());
}

} // namespace
} // namespace corvandi::testing
