#include "core/dictation/dictation_fixture.h"

namespace corvandi::testing {
namespace {

/// What the vocabulary and the clean-up make of a dictation.
class TextRulesTest : public DictationFixture {
protected:
    void addRule(const char* from, const char* to, const VocabScope& scope = vocab_scope::Global{})
    {
        controller->store().addVocab(QString::fromUtf8(from), QString::fromUtf8(to), scope);
    }
    [[nodiscard]] VocabScope ruleListOf(const QString& application)
    {
        controller->store().addApp(application, QStringLiteral("Application"));
        return vocab_scope::App{application};
    }
    [[nodiscard]] QString typedAfter(const char* transcript)
    {
        keyboard.posted.clear();
        dictate(QString::fromUtf8(transcript));
        return keyboard.typed();
    }
};

TEST_F(TextRulesTest, ARuleReplacesInAnyLetterCaseAsItIsWritten)
{
    addRule("gonna", "going to");
    EXPECT_EQ(typedAfter("Gonna go"), QStringLiteral("going to go"));
    EXPECT_EQ(typedAfter("gonnabe"), QStringLiteral("gonnabe"));
}

TEST_F(TextRulesTest, ATriggerIsMatchedLiterally)
{
    addRule("a.b", "dot");
    EXPECT_EQ(typedAfter("a.b axb"), QStringLiteral("dot axb"));
}

TEST_F(TextRulesTest, AReplacementIsInsertedLiterally)
{
    addRule("dollar", "$1");
    EXPECT_EQ(typedAfter("dollar"), QStringLiteral("$1"));
}

TEST_F(TextRulesTest, ARuleWithoutATriggerIsSkipped)
{
    addRule("", "nothing");
    EXPECT_EQ(typedAfter("Go on."), QStringLiteral("Go on."));
}

TEST_F(TextRulesTest, EachRuleSeesWhatTheOneBeforeItMade)
{
    addRule("one", "two");
    addRule("two", "three");
    EXPECT_EQ(typedAfter("one"), QStringLiteral("three"));
}

TEST_F(TextRulesTest, TheRulesOfTheApplicationAtThePressApply)
{
    addRule("ok", "okay");
    addRule("ok", "OK", ruleListOf(QStringLiteral("org.example.editor")));
    EXPECT_EQ(typedAfter("ok"), QStringLiteral("OK"));
    workspace.frontmost = QStringLiteral("org.example.other");
    EXPECT_EQ(typedAfter("ok"), QStringLiteral("okay"));
}

TEST_F(TextRulesTest, TheRulesAreThoseOfThePressEvenIfTheUserSwitchesAfterwards)
{
    addRule("ok", "OK", ruleListOf(QStringLiteral("org.example.editor")));
    hold();
    workspace.frontmost = QStringLiteral("org.example.other");
    recognise(QStringLiteral("ok"));
    EXPECT_EQ(pasteboard.text(), QStringLiteral("OK"));
}

TEST_F(TextRulesTest, WithoutATargetTheGlobalRulesApply)
{
    addRule("ok", "okay");
    workspace.frontmost.reset();
    EXPECT_EQ(typedAfter("ok"), QStringLiteral("okay"));
}

TEST_F(TextRulesTest, ARuleThatIsAddedAppliesToTheNextDictation)
{
    EXPECT_EQ(typedAfter("ok"), QStringLiteral("ok"));
    addRule("ok", "OK");
    EXPECT_EQ(typedAfter("ok"), QStringLiteral("OK"));
}

TEST_F(TextRulesTest, FillersStayUnlessTheyAreToBeRemoved)
{
    EXPECT_EQ(typedAfter("Um, hello there"), QStringLiteral("Um, hello there"));
    settings.setRemoveDisfluencies(true);
    EXPECT_EQ(typedAfter("Um, hello there"), QStringLiteral("Hello there"));
}

TEST_F(TextRulesTest, TheVocabularyComesBeforeTheRemovalOfFillers)
{
    settings.setRemoveDisfluencies(true);
    addRule("um", "umbrella");
    addRule("ah", "uh");
    EXPECT_EQ(typedAfter("An um is here ah yes"), QStringLiteral("An umbrella is here yes"));
}

TEST_F(TextRulesTest, WithoutAutomaticPunctuationThereIsNone)
{
    EXPECT_EQ(typedAfter("Don't stop, Ann."), QStringLiteral("Don't stop, Ann."));
    settings.setAutoPunctuation(false);
    EXPECT_EQ(typedAfter("Don't stop, Ann."), QStringLiteral("don't stop ann"));
}

TEST_F(TextRulesTest, TheVocabularyComesBeforeTheRemovalOfPunctuation)
{
    settings.setAutoPunctuation(false);
    addRule("colon", ":");
    EXPECT_EQ(typedAfter("Colon one"), QStringLiteral(" one"));
}

TEST_F(TextRulesTest, FillersGoBeforeThePunctuation)
{
    settings.setAutoPunctuation(false);
    settings.setRemoveDisfluencies(true);
    EXPECT_EQ(typedAfter("Well , um. Go on!"), QStringLiteral("well go on"));
}

TEST_F(TextRulesTest, ATextOfFillersAloneIsNothing)
{
    settings.setRemoveDisfluencies(true);
    dictate(QStringLiteral("Um, uh."));
    EXPECT_TRUE(shows(HUDState::error, "Didn't catch that."));
    EXPECT_TRUE(nothingWasDelivered());
}

TEST_F(TextRulesTest, SpacesAndTabsThatARuleMadeAreNothing)
{
    addRule("blank", " \t ");
    dictate(QStringLiteral("blank"));
    EXPECT_TRUE(shows(HUDState::error, "Didn't catch that."));
    EXPECT_TRUE(controller->store().history().empty());
}

TEST_F(TextRulesTest, ALineBreakThatARuleMadeIsDelivered)
{
    addRule("new line", "\n");
    EXPECT_EQ(typedAfter("New line"), QStringLiteral("\n"));
}

TEST_F(TextRulesTest, LineBreaksAroundTheTextThatARuleMadeStay)
{
    addRule("new line", "\n");
    EXPECT_EQ(typedAfter("Dear Ann new line"), QStringLiteral("Dear Ann \n"));
}

TEST_F(TextRulesTest, HalfACharacterBecomesTheReplacementCharacter)
{
    dictate(QStringLiteral("a ") + QChar(0xD83D) + QStringLiteral(" b"));
    EXPECT_EQ(keyboard.typed(), QStringLiteral("a \uFFFD b"));
}

} // namespace
} // namespace corvandi::testing
