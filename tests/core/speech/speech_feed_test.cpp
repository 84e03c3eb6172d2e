#include "core/speech/audio_engine.h"
#include "core/speech/speech_service_fixture.h"
#include "support/fake_audio_input.h"

#include <thread>

namespace corvandi::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using SpeechFeedTest = SpeechServiceTest;
using Behaviour = FakeAudioConverterFactory::Behaviour;

TEST_F(SpeechFeedTest, SoundFedBeforeTheStartComesFirstAndInOrder)
{
    feed(1);
    feed(2);
    EXPECT_TRUE(start().hasSucceeded());
    feed(3);
    feed(4);
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(received(), ElementsAre(1, 2, 3, 4));
}

TEST_F(SpeechFeedTest, OfEarlySoundTheLast384000FramesSurvive)
{
    for (int index = 1; index <= 81; ++index)
        service->feed(tagged(static_cast<float>(index), 4800));
    EXPECT_TRUE(start().hasSucceeded());
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(received(), SizeIs(80));
    EXPECT_EQ(received().front(), 2);
    EXPECT_EQ(received().back(), 81);
}

TEST_F(SpeechFeedTest, TheEngineGetsItsOwnFormatEarlyAndLive)
{
    feed(1);
    EXPECT_TRUE(start().hasSucceeded());
    feed(2);
    EXPECT_TRUE(finish().hasSucceeded());
    ASSERT_THAT(framework.latest().received, SizeIs(2));
    for (const AudioBuffer& buffer : framework.latest().received)
        EXPECT_EQ(buffer.format(), engineFormat);
}

TEST_F(SpeechFeedTest, ABufferThatIsInTheEnginesFormatAlreadyIsPassedAsACopy)
{
    framework.format = microphoneFormat;
    feed(1);
    EXPECT_TRUE(start().hasSucceeded());
    feed(2);
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(received(), ElementsAre(1, 2));
    EXPECT_THAT(converters.calls(), IsEmpty());
}

TEST_F(SpeechFeedTest, TheCallersBufferMayBeUsedAgainAtOnce)
{
    framework.format = microphoneFormat;
    AudioBuffer reused = tagged(1);
    service->feed(reused);
    EXPECT_TRUE(start().hasSucceeded());
    std::get<std::vector<float>>(reused.samples()).assign(2048, 2);
    service->feed(reused);
    std::get<std::vector<float>>(reused.samples()).assign(2048, 3);
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(received(), ElementsAre(1, 2));
}

TEST_F(SpeechFeedTest, EmptyBuffersAreIgnoredInEveryState)
{
    const AudioBuffer empty = tagged(1, 0);
    framework.format = microphoneFormat;
    service->feed(empty);
    framework.starting.hold();
    const auto starting = start();
    service->feed(empty);
    framework.starting.release();
    service->feed(empty);
    EXPECT_TRUE(finish().hasSucceeded());
    service->feed(empty);
    EXPECT_THAT(framework.latest().received, IsEmpty());

    EXPECT_TRUE(start().hasSucceeded());
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(framework.latest().received, IsEmpty());
}

TEST_F(SpeechFeedTest, OneConverterServesAWholeDictationAndIsGivenEachBufferOnce)
{
    feed(1);
    EXPECT_TRUE(start().hasSucceeded());
    feed(2);
    feed(3);
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(converters.creations, SizeIs(1));
    std::vector<float> given;
    for (const FakeAudioConverterFactory::Call& call : converters.calls())
        given.push_back(call.firstSample);
    EXPECT_THAT(given, ElementsAre(1, 2, 3));
}

TEST_F(SpeechFeedTest, ABufferFedDuringTheHandOverOfEarlySoundComesOnceAndAfterIt)
{
    bool hasFed = false;
    converters.whileConverting = [&] {
        if (std::exchange(hasFed, true))
            return;
        feed(3);
    };
    feed(1);
    feed(2);
    EXPECT_TRUE(start().hasSucceeded());
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(received(), ElementsAre(1, 2, 3));
}

TEST_F(SpeechFeedTest, ABufferThatIsBeingConvertedWhenTheDictationEndsIsDropped)
{
    std::optional<TaskOutcome<Transcript>> finishing;
    converters.whileConverting = [&] { finishing = finish(); };
    EXPECT_TRUE(start().hasSucceeded());
    feed(1);
    ASSERT_TRUE(finishing);
    EXPECT_TRUE(finishing->hasSucceeded());
    EXPECT_THAT(received(), IsEmpty());
}

TEST_F(SpeechFeedTest, ABufferThatIsBeingConvertedWhenTheNextDictationBeginsIsInNeither)
{
    bool hasRestarted = false;
    converters.whileConverting = [&] {
        if (std::exchange(hasRestarted, true))
            return;
        EXPECT_TRUE(finish().hasSucceeded());
        EXPECT_TRUE(start().hasSucceeded());
    };
    EXPECT_TRUE(start().hasSucceeded());
    feed(1);
    feed(2);
    EXPECT_TRUE(finish().hasSucceeded());
    ASSERT_THAT(framework.dictations(), SizeIs(2));
    EXPECT_THAT(framework.dictations().front()->received, IsEmpty());
    EXPECT_THAT(received(), ElementsAre(2));
}

TEST_F(SpeechFeedTest, SoundFedAfterADictationIsKeptForTheNextOne)
{
    EXPECT_TRUE(start().hasSucceeded());
    feed(1);
    EXPECT_TRUE(finish().hasSucceeded());
    feed(2);
    EXPECT_TRUE(start().hasSucceeded());
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(tags(framework.dictations().front()->received), ElementsAre(1));
    EXPECT_THAT(received(), ElementsAre(2));
}

TEST_F(SpeechFeedTest, AConversionThatFailsIsLoggedAndTheDictationGoesOn)
{
    converters.behaviour = Behaviour::failsWithError;
    feed(1);
    EXPECT_TRUE(start().hasSucceeded());
    feed(2);
    queue.drain();
    const QString line = QStringLiteral("Corvandi: audio conversion error: the resampler broke");
    EXPECT_THAT(log.lines(), ElementsAre(line, line));

    service->feed(tagged(3, 682, 16000));
    EXPECT_EQ(finish().value(), (Transcript{{}, false}));
    EXPECT_THAT(received(), ElementsAre(3));
}

TEST_F(SpeechFeedTest, AConversionErrorIsNotLoggedOnTheAudioThread)
{
    converters.behaviour = Behaviour::failsWithError;
    EXPECT_TRUE(start().hasSucceeded());
    std::thread([this] { feed(1); }).join();
    EXPECT_THAT(log.lines(), IsEmpty());
    queue.drain();
    EXPECT_THAT(log.lines(), SizeIs(1));
    EXPECT_TRUE(finish().hasSucceeded());
}

TEST_F(SpeechFeedTest, AConversionErrorThatIsOnItsWayWhenTheServiceIsDestroyedIsStillLogged)
{
    converters.behaviour = Behaviour::failsWithError;
    EXPECT_TRUE(start().hasSucceeded());
    feed(1);
    service.reset();
    queue.drain();
    EXPECT_THAT(log.lines(), SizeIs(1));
}

TEST_F(SpeechFeedTest, BuffersFromWhichNoSoundComesAreDropped)
{
    for (const Behaviour behaviour : {Behaviour::givesNothing, Behaviour::runsOutOfMemory}) {
        converters.behaviour = behaviour;
        feed(1);
        EXPECT_TRUE(start().hasSucceeded());
        feed(2);
        EXPECT_TRUE(finish().hasSucceeded());
        EXPECT_THAT(received(), IsEmpty());
    }
    queue.drain();
    EXPECT_THAT(log.lines(), IsEmpty());
}

/// Another microphone than the one that a dictation was begun with.
constexpr AudioFormat otherFormat{44100, 2, SampleFormat::float32};

AudioBuffer fromOther(float tag)
{
    return {otherFormat, std::vector<float>(4096, tag)};
}

TEST_F(SpeechFeedTest, SoundInAnotherFormatGoesOnThroughAConverterOfItsOwn)
{
    EXPECT_TRUE(start().hasSucceeded());
    feed(1);
    service->feed(fromOther(2));
    service->feed(fromOther(3));
    feed(4);
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(received(), ElementsAre(1, 2, 3, 4));
    std::vector<AudioFormat> sources;
    for (const auto& creation : converters.creations)
        sources.push_back(creation.from);
    EXPECT_THAT(sources, ElementsAre(microphoneFormat, otherFormat, microphoneFormat));
    queue.drain();
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(SpeechFeedTest, ADictationWhoseMicrophoneGoesGoesOnWithTheNextOne)
{
    FakeAudioInput input;
    AudioEngine capture(input, queue);
    capture.onBuffer = [this](const AudioBuffer& buffer) { service->feed(buffer); };
    EXPECT_TRUE(start(TaskOutcome<AudioFormat>(capture.start()).value()).hasSucceeded());
    input.deliver(tagged(1));
    input.holdBack(tagged(2));
    input.end(QStringLiteral("unplugged"));

    input.format = otherFormat;
    EXPECT_TRUE(TaskOutcome<AudioFormat>(capture.start()).hasSucceeded());
    input.deliver(fromOther(3));
    EXPECT_TRUE(TaskOutcome<>(capture.stop()).hasSucceeded());
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(framework.dictations(), SizeIs(1));
    EXPECT_THAT(received(), ElementsAre(1, 2, 3));
}

TEST_F(SpeechFeedTest, TheFormatMayChangeBeforeTheEngineRuns)
{
    feed(1);
    service->feed(fromOther(2));
    EXPECT_TRUE(start().hasSucceeded());
    service->feed(fromOther(3));
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(received(), ElementsAre(1, 2, 3));
    EXPECT_THAT(converters.creations, SizeIs(2));
}

TEST_F(SpeechFeedTest, ABufferInTheEnginesFormatLeavesTheConverterAsItIs)
{
    EXPECT_TRUE(start().hasSucceeded());
    feed(1);
    service->feed(tagged(2, 682, 16000));
    feed(3);
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(received(), ElementsAre(1, 2, 3));
    EXPECT_THAT(converters.creations, SizeIs(1));
}

TEST_F(SpeechFeedTest, AFormatWithoutAConverterIsLoggedOnceAndAnotherOneIsTriedAgain)
{
    EXPECT_TRUE(start().hasSucceeded());
    feed(1);
    converters.isAvailable = false;
    for (int count = 0; count < 20; ++count)
        service->feed(fromOther(2));
    EXPECT_THAT(log.lines(), IsEmpty());
    queue.drain();
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("Corvandi: audio conversion error: there is no way from "
                                           "44100 Hz, 2 channels to the engine's format")));
    EXPECT_THAT(converters.creations, SizeIs(2));

    converters.isAvailable = true;
    feed(3);
    EXPECT_TRUE(finish().hasSucceeded());
    EXPECT_THAT(received(), ElementsAre(1, 3));
}

} // namespace
} // namespace corvandi::testing
