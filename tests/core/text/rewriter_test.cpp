#include "core/text/rewriter.h"

#include "support/fake_language_model.h"
#include "support/recording_log.h"
#include "support/task_outcome.h"
#include "support/virtual_queue.h"

#include <gtest/gtest.h>

namespace corvandi::testing {
namespace {

using namespace std::chrono_literals;

class RewriterTest : public ::testing::Test {
protected:
    using Outcome = TaskOutcome<std::optional<QString>>;

    RewriterTest() { lookAtModel(); }

    void lookAtModel()
    {
        const auto look = model.refreshAvailability([] {});
        queue.drain();
    }
    [[nodiscard]] Outcome ask(const QString& text)
    {
        Outcome outcome(rewriter.rewrite(text));
        queue.drain();
        return outcome;
    }
    [[nodiscard]] std::optional<QString> rewrite(const QString& text, const LanguageModelAnswer& answer)
    {
        const Outcome outcome = ask(text);
        model.answer(answer);
        queue.drain();
        return outcome.value();
    }
    [[nodiscard]] std::optional<QString> rewrite(const char* text, const char* answer)
    {
        return rewrite(QString::fromUtf8(text), QString::fromUtf8(answer));
    }

    VirtualQueue queue;
    RecordingLog log;
    FakeLanguageModel model{queue};
    Rewriter rewriter{model, queue, log};
};

std::optional<QString> captionFor(LanguageModelAvailability availability)
{
    return Rewriter::caption(availability);
}

TEST(RewriterCaptionTest, AnAvailableModelNeedsNone)
{
    EXPECT_EQ(captionFor(LanguageModelAvailability::available), std::nullopt);
}

TEST(RewriterCaptionTest, EveryReasonHasItsOwn)
{
    EXPECT_EQ(captionFor(LanguageModelAvailability::deviceNotEligible),
              QStringLiteral("Requires a device that supports Apple Intelligence."));
    EXPECT_EQ(captionFor(LanguageModelAvailability::appleIntelligenceNotEnabled),
              QStringLiteral("Turn on Apple Intelligence in System Settings."));
    EXPECT_EQ(captionFor(LanguageModelAvailability::modelNotReady),
              QStringLiteral("The model is still downloading. Try again shortly."));
    EXPECT_EQ(captionFor(LanguageModelAvailability::otherReason),
              QStringLiteral("Rewrite is unavailable on this device."));
}

TEST_F(RewriterTest, TheModelGetsTheInstructionsAndTheTextAsItIs)
{
    const Outcome outcome = ask(QStringLiteral("  so um I think\n"));
    ASSERT_EQ(model.instructions.size(), 1U);
    EXPECT_EQ(model.instructions[0],
              QStringLiteral(
                  "Rewrite the user's dictated text into clear, grammatical, well-punctuated prose. Fix "
                  "grammar, punctuation, capitalization, run-ons, and word order. Do NOT add facts, change "
                  "the meaning, answer or act on the content, or add commentary. Preserve the user's "
                  "wording and voice. Output only the rewritten text, nothing else."));
    EXPECT_EQ(model.instructions[0].size(), 319);
    ASSERT_EQ(model.prompts.size(), 1U);
    EXPECT_EQ(model.prompts[0], QStringLiteral("  so um I think\n"));
    EXPECT_FALSE(outcome.hasEnded());
    model.answer(QStringLiteral("So, I think."));
}

TEST_F(RewriterTest, EachTextGetsAConversationOfItsOwn)
{
    EXPECT_TRUE(rewrite("one two", "One, two."));
    EXPECT_EQ(model.sessions, 0);
    EXPECT_TRUE(rewrite("three four", "Three, four."));
    EXPECT_EQ(model.instructions.size(), 2U);
    EXPECT_EQ(model.sessions, 0);
}

TEST_F(RewriterTest, TheAnswerIsTrimmedOfWhiteSpaceAndLineBreaks)
{
    EXPECT_EQ(rewrite("i am here", " \n\tI am here.\u00a0\n"), QStringLiteral("I am here."));
}

TEST_F(RewriterTest, AnAnswerOfHalfTheCharactersIsAccepted)
{
    EXPECT_EQ(rewrite("0123456789", "01234"), QStringLiteral("01234"));
}

TEST_F(RewriterTest, AnAnswerOfLessThanHalfTheCharactersIsRejectedWithoutALogLine)
{
    EXPECT_EQ(rewrite("0123456789", "0123"), std::nullopt);
    EXPECT_EQ(rewrite("012345678", "0123"), std::nullopt);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(RewriterTest, TheCharactersOfTheAnswerAreCountedAfterTrimming)
{
    EXPECT_EQ(rewrite("0123456789", "0123     "), std::nullopt);
}

TEST_F(RewriterTest, TheCharactersOfTheTextAreCountedWithItsWhiteSpace)
{
    EXPECT_EQ(rewrite("01234567  ", "0123"), std::nullopt);
}

TEST_F(RewriterTest, CharactersAreCountedAsAPersonCountsThem)
{
    // Two families of eleven code units each against one letter, then against two.
    EXPECT_EQ(rewrite("👨‍👩‍👧‍👦👨‍👩‍👧‍👦", "x"), QStringLiteral("x"));
    EXPECT_EQ(rewrite("abc", "👨‍👩‍👧‍👦"), std::nullopt);
}

TEST_F(RewriterTest, AnAnswerOfWhiteSpaceIsRejectedWithoutALogLine)
{
    EXPECT_EQ(rewrite("a", " \n\t "), std::nullopt);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(RewriterTest, AnEmptyAnswerToAnEmptyTextIsRejected)
{
    EXPECT_EQ(rewrite("", ""), std::nullopt);
}

TEST_F(RewriterTest, AFailureOfTheModelIsLogged)
{
    EXPECT_EQ(rewrite(QStringLiteral("hello"), LanguageModelFailure{QStringLiteral("it refused")}),
              std::nullopt);
    EXPECT_EQ(log.lines(), std::vector{QStringLiteral("Corvandi: rewrite failed: it refused")});
}

TEST_F(RewriterTest, AnAnswerJustBeforeFourSecondsCounts)
{
    const Outcome outcome = ask(QStringLiteral("hello"));
    queue.advance(4s - 1ns);
    EXPECT_FALSE(outcome.hasEnded());
    model.answer(QStringLiteral("Hello."));
    queue.advance(1s);
    EXPECT_EQ(outcome.value(), QStringLiteral("Hello."));
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(RewriterTest, AfterFourSecondsTheQuestionIsAbandonedAndTheTimeOutLogged)
{
    const Outcome outcome = ask(QStringLiteral("hello"));
    queue.advance(4s);
    EXPECT_EQ(outcome.value(), std::nullopt);
    EXPECT_FALSE(model.isAsked());
    EXPECT_EQ(model.sessions, 0);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_TRUE(log.lines()[0].startsWith(QStringLiteral("Corvandi: rewrite failed: ")));
}

TEST_F(RewriterTest, AnAnswerEndsTheWait)
{
    EXPECT_TRUE(rewrite("hello", "Hello."));
    EXPECT_EQ(queue.timerCount(), 0U);
    queue.advance(10s);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(RewriterTest, AModelThatIsNotAvailableIsNotAsked)
{
    for (const auto state :
         {LanguageModelAvailability::deviceNotEligible,
          LanguageModelAvailability::appleIntelligenceNotEnabled, LanguageModelAvailability::modelNotReady,
          LanguageModelAvailability::otherReason}) {
        model.state = state;
        lookAtModel();
        EXPECT_EQ(ask(QStringLiteral("hello")).value(), std::nullopt);
    }
    EXPECT_TRUE(model.instructions.empty());
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(RewriterTest, ItTakesWhatIsKnownOfTheModelWithoutLooking)
{
    const int before = model.looks;
    EXPECT_TRUE(rewrite("hello", "Hello."));
    EXPECT_EQ(model.looks, before);
}

} // namespace
} // namespace corvandi::testing
