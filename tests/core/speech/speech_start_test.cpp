#include "core/speech/speech_error.h"
#include "core/speech/speech_service_fixture.h"

#include <ostream>
#include <string>

namespace corvandi::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class SpeechStartTest : public SpeechServiceTest {
protected:
    static std::optional<SpeechError::Kind> kindOf(const TaskOutcome<>& outcome)
    {
        try {
            outcome.rethrow();
        } catch (const SpeechError& error) {
            return error.kind();
        }
        return std::nullopt;
    }
};

TEST_F(SpeechStartTest, StartsAnAnalyzerForTheResolvedLocale)
{
    makeService(QStringLiteral("en-AU"));
    EXPECT_TRUE(start().hasSucceeded());
    ASSERT_THAT(framework.dictations(), SizeIs(1));
    EXPECT_TRUE(framework.latest().wasStarted);
    EXPECT_EQ(framework.latest().locale, Locale(QStringLiteral("en-US")));
    EXPECT_TRUE(finish().hasSucceeded());
}

TEST_F(SpeechStartTest, MakesOneConverterFromTheMicrophonesFormatToTheEngines)
{
    const AudioFormat microphone{44100, 2, SampleFormat::float32};
    EXPECT_TRUE(start(microphone).hasSucceeded());
    ASSERT_THAT(converters.creations, SizeIs(1));
    EXPECT_EQ(converters.creations.front().from, microphone);
    EXPECT_EQ(converters.creations.front().to, engineFormat);
    EXPECT_TRUE(finish().hasSucceeded());
}

TEST_F(SpeechStartTest, EndsWhenTheEngineRuns)
{
    framework.starting.hold();
    const auto outcome = start();
    EXPECT_FALSE(outcome.hasEnded());
    framework.starting.release();
    EXPECT_TRUE(outcome.hasSucceeded());
    EXPECT_TRUE(finish().hasSucceeded());
}

TEST_F(SpeechStartTest, AnUnsupportedLanguageIsReportedBeforeAnythingIsMade)
{
    makeService(QStringLiteral("xx"));
    const auto outcome = start();
    EXPECT_EQ(kindOf(outcome), SpeechError::Kind::localeUnsupported);
    EXPECT_THAT(framework.usedLocales(), IsEmpty());
    EXPECT_THAT(framework.dictations(), IsEmpty());
    EXPECT_EQ(finish().value(), (Transcript{{}, false}));
}

TEST_F(SpeechStartTest, AFailureToListTheLanguagesIsPassedOn)
{
    framework.listing.fail(QStringLiteral("no engine"));
    EXPECT_EQ(start().failure(), QStringLiteral("no engine"));
    EXPECT_EQ(finish().value(), (Transcript{{}, false}));
}

TEST_F(SpeechStartTest, WithoutAFormatTheAnalyzerIsLeftForFinishToEnd)
{
    framework.format.reset();
    EXPECT_EQ(kindOf(start()), SpeechError::Kind::noAnalyzerFormat);
    EXPECT_THAT(converters.creations, IsEmpty());
    EXPECT_FALSE(framework.latest().wasFinalized);

    EXPECT_EQ(finish().value(), (Transcript{{}, false}));
    EXPECT_TRUE(framework.latest().wasFinalized);
    EXPECT_FALSE(framework.latest().wasStarted);
}

TEST_F(SpeechStartTest, WithoutAConverterTheAnalyzerIsLeftForFinishToEnd)
{
    converters.isAvailable = false;
    EXPECT_EQ(kindOf(start()), SpeechError::Kind::converterUnavailable);
    EXPECT_FALSE(framework.latest().wasFinalized);

    EXPECT_EQ(finish().value(), (Transcript{{}, false}));
    EXPECT_TRUE(framework.latest().wasFinalized);
    EXPECT_FALSE(framework.latest().wasStarted);
}

TEST_F(SpeechStartTest, WithoutResultsToWaitForFinishTellsWhetherTheAnalyzerEndedWell)
{
    framework.format.reset();
    EXPECT_TRUE(start().hasFailed());
    framework.finalizing.fail(QStringLiteral("stuck"));
    EXPECT_EQ(finish().value(), (Transcript{{}, true}));
}

TEST_F(SpeechStartTest, AnEngineThatCannotStartLeavesItsResultsForFinishToCollect)
{
    framework.starting.fail(QStringLiteral("no memory"));
    EXPECT_EQ(start().failure(), QStringLiteral("no memory"));
    EXPECT_FALSE(framework.latest().wasFinalized);
    framework.pushFinal(QStringLiteral("last words"));

    EXPECT_EQ(finish().value(), (Transcript{QStringLiteral("last words"), false}));
    EXPECT_TRUE(framework.latest().wasFinalized);
}

TEST_F(SpeechStartTest, SoundKeptBeforeAFailedStartIsKeptForTheNextOne)
{
    feed(1);
    framework.starting.fail(QStringLiteral("no memory"));
    EXPECT_TRUE(start().hasFailed());
    feed(2);
    framework.starting.succeed();
    EXPECT_TRUE(start().hasSucceeded());
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(received(), ElementsAre(1, 2));
}

TEST_F(SpeechStartTest, SoundKeptBeforeAFailedStartIsForgottenByFinish)
{
    feed(1);
    framework.format.reset();
    EXPECT_TRUE(start().hasFailed());
    EXPECT_TRUE(finish().hasSucceeded());
    framework.format = engineFormat;
    EXPECT_TRUE(start().hasSucceeded());
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(received(), IsEmpty());
}

TEST_F(SpeechStartTest, ANewStartAfterAFailedOneEndsItsAnalyzerAndBuildsEverythingAfresh)
{
    framework.starting.fail(QStringLiteral("no memory"));
    EXPECT_TRUE(start().hasFailed());
    framework.pushFinal(QStringLiteral("of the failed start"));
    framework.starting.succeed();
    EXPECT_TRUE(start().hasSucceeded());
    ASSERT_THAT(framework.dictations(), SizeIs(2));
    EXPECT_TRUE(framework.dictations().front()->wasFinalized);

    framework.pushFinal(QStringLiteral("of the new one"));
    EXPECT_EQ(finish().value(), (Transcript{QStringLiteral("of the new one"), false}));
}

TEST_F(SpeechStartTest, ANewStartEndsADictationThatNobodyHasFinished)
{
    EXPECT_TRUE(start().hasSucceeded());
    feed(1);
    EXPECT_TRUE(start().hasSucceeded());
    feed(2);
    EXPECT_TRUE(finish().hasSucceeded());
    ASSERT_THAT(framework.dictations(), SizeIs(2));
    EXPECT_THAT(tags(framework.dictations().front()->received), ElementsAre(1));
    EXPECT_THAT(received(), ElementsAre(2));
}

TEST_F(SpeechStartTest, ANewStartEndsOneThatIsUnderWay)
{
    framework.formatQuery.hold();
    const auto first = start();
    const auto second = start();
    framework.formatQuery.release();
    EXPECT_TRUE(first.hasFailed());
    EXPECT_TRUE(second.hasSucceeded());
    EXPECT_TRUE(finish().hasSucceeded());
}

/// A step at which a start can be suspended.
struct Suspension {
    const char* name;
    ScriptedStep FakeSpeechFramework::*step;
};

std::ostream& operator<<(std::ostream& stream, const Suspension& suspension)
{
    return stream << suspension.name;
}

class SuspendedStartTest : public SpeechServiceTest, public ::testing::WithParamInterface<Suspension> {
protected:
    ScriptedStep& step() { return framework.*GetParam().step; }
};

TEST_P(SuspendedStartTest, AFinishInBetweenEndsTheStartWithAnError)
{
    step().hold();
    feed(1);
    const auto starting = start();
    ASSERT_TRUE(step().isPending());
    const auto finishing = finish();
    step().release();
    EXPECT_TRUE(starting.hasFailed());
    EXPECT_EQ(finishing.value(), (Transcript{{}, false}));
}

TEST_P(SuspendedStartTest, ADictationAfterAFinishInBetweenIsWhole)
{
    step().hold();
    const auto starting = start();
    const auto finishing = finish();
    step().release();
    feed(1);
    EXPECT_TRUE(start().hasSucceeded());
    feed(2);
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(received(), ElementsAre(1, 2));
}

TEST_P(SuspendedStartTest, TheServiceMayBeDestroyedInBetween)
{
    step().hold();
    feed(1);
    const auto outcome = start();
    service.reset();
    EXPECT_FALSE(outcome.hasEnded());
    step().release();
    EXPECT_TRUE(outcome.hasFailed());
}

TEST_P(SuspendedStartTest, SoundFedInBetweenIsHandedOverInOrder)
{
    feed(1);
    step().hold();
    const auto outcome = start();
    feed(2);
    step().release();
    feed(3);
    EXPECT_TRUE(outcome.hasSucceeded());
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(received(), ElementsAre(1, 2, 3));
}

INSTANTIATE_TEST_SUITE_P(
    Steps, SuspendedStartTest,
    ::testing::Values(Suspension{"ListingTheLanguages", &FakeSpeechFramework::listing},
                      Suspension{"AskingForTheFormat", &FakeSpeechFramework::formatQuery},
                      Suspension{"StartingTheEngine", &FakeSpeechFramework::starting}),
    [](const ::testing::TestParamInfo<Suspension>& test) { return std::string(test.param.name); });

} // namespace
} // namespace corvandi::testing
