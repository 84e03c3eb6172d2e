#include "core/speech/speech_service_fixture.h"

namespace corvandi::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using SpeechFinishTest = SpeechServiceTest;

TEST_F(SpeechFinishTest, WithoutAStartTheTranscriptIsEmpty)
{
    EXPECT_EQ(finish().value(), (Transcript{{}, false}));
}

TEST_F(SpeechFinishTest, WithoutAStartEarlySoundIsForgotten)
{
    feed(1);
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_TRUE(start().hasSucceeded());
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(received(), IsEmpty());
}

TEST_F(SpeechFinishTest, FinalTextsAreJoinedExactlyAsTheEngineSpelledThem)
{
    EXPECT_TRUE(start().hasSucceeded());
    framework.pushFinal(QStringLiteral("Hello"));
    framework.pushFinal(QStringLiteral(" world"));
    framework.pushFinal(QStringLiteral(".\n"));
    EXPECT_EQ(finish().value(), (Transcript{QStringLiteral("Hello world.\n"), false}));
}

TEST_F(SpeechFinishTest, TextsThatAreNotFinalAreIgnored)
{
    EXPECT_TRUE(start().hasSucceeded());
    framework.pushVolatile(QStringLiteral("Hell"));
    framework.pushFinal(QStringLiteral("Hello"));
    framework.pushVolatile(QStringLiteral(" wor"));
    EXPECT_EQ(finish().value(), (Transcript{QStringLiteral("Hello"), false}));
}

TEST_F(SpeechFinishTest, ResultsThatComeDuringTheFinalizationCount)
{
    EXPECT_TRUE(start().hasSucceeded());
    framework.pushFinal(QStringLiteral("Hello"));
    framework.finalizing.hold();
    const auto outcome = finish();
    EXPECT_FALSE(outcome.hasEnded());
    framework.pushFinal(QStringLiteral(" world"));
    framework.finalizing.release();
    EXPECT_EQ(outcome.value(), (Transcript{QStringLiteral("Hello world"), false}));
}

TEST_F(SpeechFinishTest, WaitsForTheLastResultAfterTheFinalization)
{
    framework.finalizingEndsResults = false;
    EXPECT_TRUE(start().hasSucceeded());
    const auto outcome = finish();
    EXPECT_FALSE(outcome.hasEnded());
    framework.pushFinal(QStringLiteral("late"));
    EXPECT_FALSE(outcome.hasEnded());
    framework.endResults();
    EXPECT_EQ(outcome.value(), (Transcript{QStringLiteral("late"), false}));
}

TEST_F(SpeechFinishTest, ARecognitionThatFailsIsLoggedAndGivesTheTextUntilThen)
{
    EXPECT_TRUE(start().hasSucceeded());
    framework.pushFinal(QStringLiteral("Hello"));
    framework.failResults(QStringLiteral("decoder lost"));
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("Corvandi: transcription stream error: decoder lost")));
    EXPECT_EQ(finish().value(), (Transcript{QStringLiteral("Hello"), true}));
}

TEST_F(SpeechFinishTest, AFinalizationThatFailsIsLoggedAndTheTextIsStillAwaited)
{
    framework.finalizing.fail(QStringLiteral("engine gone"));
    EXPECT_TRUE(start().hasSucceeded());
    framework.pushFinal(QStringLiteral("Hello"));
    const auto outcome = finish();
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("Corvandi: transcription finalize error: engine gone")));
    EXPECT_FALSE(outcome.hasEnded());
    framework.endResults();
    EXPECT_EQ(outcome.value(), (Transcript{QStringLiteral("Hello"), true}));
}

TEST_F(SpeechFinishTest, LogsNothingOfWhatWasDictated)
{
    EXPECT_TRUE(start().hasSucceeded());
    framework.pushFinal(QStringLiteral("secret"));
    framework.failResults(QStringLiteral("decoder lost"));
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_FALSE(log.contains(QStringLiteral("secret")));
}

TEST_F(SpeechFinishTest, ASecondFinishHasNothingToReturn)
{
    EXPECT_TRUE(start().hasSucceeded());
    framework.pushFinal(QStringLiteral("Hello"));
    EXPECT_EQ(finish().value().text, QStringLiteral("Hello"));
    EXPECT_EQ(finish().value(), (Transcript{{}, false}));
}

TEST_F(SpeechFinishTest, EachDictationHasItsOwnAnalyzerAndText)
{
    for (const QString& text : {QStringLiteral("one"), QStringLiteral("two")}) {
        EXPECT_TRUE(start().hasSucceeded());
        framework.pushFinal(text);
        EXPECT_EQ(finish().value(), (Transcript{text, false}));
    }
    EXPECT_EQ(framework.dictations().size(), 2u);
}

TEST_F(SpeechFinishTest, TheNextDictationMayRunWhileTheLastOneIsStillBeingTranscribed)
{
    framework.finalizing.hold();
    EXPECT_TRUE(start().hasSucceeded());
    feed(1);
    framework.pushFinal(QStringLiteral("one"));
    const auto first = finish();

    EXPECT_TRUE(start().hasSucceeded());
    feed(2);
    framework.pushFinal(QStringLiteral("two"));
    EXPECT_FALSE(first.hasEnded());
    framework.finalizing.release();
    EXPECT_EQ(first.value(), (Transcript{QStringLiteral("one"), false}));
    EXPECT_EQ(finish().value(), (Transcript{QStringLiteral("two"), false}));
    EXPECT_THAT(tags(framework.dictations().front()->received), ElementsAre(1));
    EXPECT_THAT(received(), ElementsAre(2));
}

TEST_F(SpeechFinishTest, ATranscriptThatNobodyWaitsForAnyMoreIsDropped)
{
    framework.finalizing.hold();
    EXPECT_TRUE(start().hasSucceeded());
    {
        const QCoro::Task<Transcript> dropped = service->finish();
    }
    framework.finalizing.release();
    EXPECT_TRUE(start().hasSucceeded());
    framework.pushFinal(QStringLiteral("next"));
    EXPECT_EQ(finish().value(), (Transcript{QStringLiteral("next"), false}));
}

TEST_F(SpeechFinishTest, AnAbandonedDictationEndsWithItsTextUntilThenAndAsFailed)
{
    framework.finalizing.hold();
    EXPECT_TRUE(start().hasSucceeded());
    framework.pushFinal(QStringLiteral("Hello"));
    const auto outcome = finish();
    EXPECT_FALSE(outcome.hasEnded());

    service->abandon();
    EXPECT_TRUE(framework.latest().wasCancelled);
    EXPECT_EQ(outcome.value(), (Transcript{QStringLiteral("Hello"), true}));
    framework.finalizing.release();
}

TEST_F(SpeechFinishTest, AbandoningLeavesADictationThatIsNotFinishedAlone)
{
    framework.finalizing.hold();
    EXPECT_TRUE(start().hasSucceeded());
    const auto first = finish();
    EXPECT_TRUE(start().hasSucceeded());
    service->abandon();
    EXPECT_TRUE(first.hasEnded());
    EXPECT_FALSE(framework.latest().wasCancelled);
    framework.finalizing.release();
    framework.pushFinal(QStringLiteral("next"));
    EXPECT_EQ(finish().value(), (Transcript{QStringLiteral("next"), false}));
}

TEST_F(SpeechFinishTest, AbandoningWithoutADictationDoesNothing)
{
    service->abandon();
    const auto outcome = finish();
    service->abandon();
    EXPECT_EQ(outcome.value(), (Transcript{{}, false}));
}

TEST_F(SpeechFinishTest, AFinishThatIsUnderWayWhenTheServiceIsDestroyedReturnsItsText)
{
    framework.finalizing.hold();
    EXPECT_TRUE(start().hasSucceeded());
    framework.pushFinal(QStringLiteral("Hello"));
    const auto outcome = finish();
    service.reset();
    framework.finalizing.release();
    EXPECT_EQ(outcome.value(), (Transcript{QStringLiteral("Hello"), false}));
}

TEST_F(SpeechFinishTest, DestroyingTheServiceEndsTheDictationThatIsRunning)
{
    EXPECT_TRUE(start().hasSucceeded());
    feed(1);
    service.reset();
    EXPECT_TRUE(framework.latest().wasFinalized);
    EXPECT_THAT(received(), ElementsAre(1));
}

} // namespace
} // namespace corvandi::testing
