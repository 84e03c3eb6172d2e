#include "core/speech/sounds.h"
#include "core/speech/speech_input.h"
#include "support/fake_audio_converter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace corvandi::testing {
namespace {

constexpr uint32_t largest = std::numeric_limits<uint32_t>::max();

TEST(FrameCount, DropsTheFraction)
{
    EXPECT_EQ(wholeFrames(0.999), 0u);
    EXPECT_EQ(wholeFrames(682.67), 682u);
    EXPECT_EQ(wholeFrames(4294967295.9), largest);
}

TEST(FrameCount, AddsUpToTheLargestCount)
{
    EXPECT_EQ(addFrames(1706, 342), 2048u);
    EXPECT_EQ(addFrames(largest - 1, 1), largest);
}

TEST(FrameCountDeathTest, AValueThatDoesNotFitEndsTheProcess)
{
    EXPECT_DEATH((void)wholeFrames(4294967296.0), "don't fit into a frame count");
    EXPECT_DEATH((void)wholeFrames(std::numeric_limits<double>::infinity()), "don't fit");
    EXPECT_DEATH((void)wholeFrames(std::numeric_limits<double>::quiet_NaN()), "don't fit");
    EXPECT_DEATH((void)wholeFrames(-1), "don't fit");
}

TEST(FrameCountDeathTest, ASumThatDoesNotFitEndsTheProcess)
{
    EXPECT_DEATH((void)addFrames(largest, 1), "don't fit into a frame count");
}

} // namespace
} // namespace corvandi::testing

namespace corvandi::testing {
namespace {

using ::testing::Each;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class BufferConversionTest : public ::testing::Test {
protected:
    BufferConversion convert(const AudioBuffer& buffer, const AudioFormat& target = engineFormat)
    {
        const std::unique_ptr<AudioConverter> converter = converters.create(buffer.format(), target);
        return convertBuffer(buffer, target, converter.get());
    }
    uint32_t capacityFor(const AudioBuffer& buffer, const AudioFormat& target = engineFormat)
    {
        (void)convert(buffer, target);
        return converters.calls().back().capacity;
    }

    FakeAudioConverterFactory converters;
};

TEST_F(BufferConversionTest, ABufferInTheTargetFormatIsCopiedAndNotConverted)
{
    const AudioBuffer source = tagged(0.5F, 100, 16000);
    const BufferConversion conversion = convert(source);
    ASSERT_TRUE(conversion.buffer);
    EXPECT_EQ(conversion.buffer->format(), engineFormat);
    EXPECT_THAT(conversion.buffer->floatSamples(), SizeIs(100));
    EXPECT_THAT(conversion.buffer->floatSamples(), Each(0.5F));
    EXPECT_NE(conversion.buffer->floatSamples().data(), source.floatSamples().data());
    EXPECT_THAT(converters.calls(), IsEmpty());
}

TEST_F(BufferConversionTest, ABufferInTheTargetFormatNeedsNoConverter)
{
    EXPECT_TRUE(convertBuffer(tagged(0.5F, 100, 16000), engineFormat, nullptr).buffer);
}

TEST_F(BufferConversionTest, WithoutAConverterNothingComesOut)
{
    const BufferConversion conversion = convertBuffer(tagged(0.5F), engineFormat, nullptr);
    EXPECT_FALSE(conversion.buffer);
    EXPECT_FALSE(conversion.error);
}

TEST_F(BufferConversionTest, WhatTheConverterMakesComesOut)
{
    const BufferConversion conversion = convert(tagged(0.5F));
    ASSERT_TRUE(conversion.buffer);
    EXPECT_EQ(conversion.buffer->format(), engineFormat);
    EXPECT_EQ(conversion.buffer->frameLength(), 682u);
    EXPECT_FALSE(conversion.error);
}

TEST_F(BufferConversionTest, FromTheSameRateTheCapacityIsTheLengthPlusTheHeadroom)
{
    EXPECT_EQ(capacityFor(tagged(1), {48000, 1, SampleFormat::int16}), 2048u + 1024u);
}

TEST_F(BufferConversionTest, From48000To16000TheCapacityFor2048FramesIs682PlusTheHeadroom)
{
    EXPECT_EQ(capacityFor(tagged(1, 2048, 48000)), 682u + 1024u);
}

TEST_F(BufferConversionTest, From44100To16000TheCapacityFor2048FramesIs743PlusTheHeadroom)
{
    EXPECT_EQ(capacityFor(tagged(1, 2048, 44100)), 743u + 1024u);
}

TEST_F(BufferConversionTest, From16000To48000TheCapacityIsThreeTimesTheLengthPlusTheHeadroom)
{
    EXPECT_EQ(capacityFor(tagged(1, 2048, 16000), microphoneFormat), 6144u + 1024u);
}

TEST_F(BufferConversionTest, TheConverterIsGivenTheWholeSourceOnce)
{
    (void)convert(tagged(0.5F));
    ASSERT_THAT(converters.calls(), SizeIs(1));
    EXPECT_EQ(converters.calls().front().frames, 2048u);
    EXPECT_EQ(converters.calls().front().firstSample, 0.5F);
}

TEST_F(BufferConversionTest, AFailedConversionGivesItsErrorAndNoSound)
{
    converters.behaviour = FakeAudioConverterFactory::Behaviour::failsWithError;
    const BufferConversion conversion = convert(tagged(1));
    EXPECT_FALSE(conversion.buffer);
    EXPECT_EQ(conversion.error, QStringLiteral("the resampler broke"));
}

TEST_F(BufferConversionTest, AnEmptyOutputIsNoSound)
{
    converters.behaviour = FakeAudioConverterFactory::Behaviour::givesNothing;
    const BufferConversion conversion = convert(tagged(1));
    EXPECT_FALSE(conversion.buffer);
    EXPECT_FALSE(conversion.error);
}

TEST_F(BufferConversionTest, WithoutMemoryForTheOutputThereIsNoSound)
{
    converters.behaviour = FakeAudioConverterFactory::Behaviour::runsOutOfMemory;
    const BufferConversion conversion = convert(tagged(1));
    EXPECT_FALSE(conversion.buffer);
    EXPECT_FALSE(conversion.error);
}

using BufferConversionDeathTest = BufferConversionTest;

TEST_F(BufferConversionDeathTest, ACapacityThatIsNoFrameCountEndsTheProcess)
{
    const AudioFormat absurd{1e9, 1, SampleFormat::float32};
    EXPECT_DEATH((void)convert(tagged(1, 5, 1), absurd), "don't fit into a frame count");
}

TEST_F(BufferConversionDeathTest, ACapacityThatFitsOnlyWithoutTheHeadroomEndsTheProcess)
{
    const AudioFormat absurd{4294967295.0, 1, SampleFormat::float32};
    EXPECT_DEATH((void)convert(tagged(1, 1, 1), absurd), "don't fit into a frame count");
}

} // namespace
} // namespace corvandi::testing

namespace corvandi::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

PendingAudio::Buffers append(PendingAudio& pending, float tag, uint32_t frames)
{
    return pending.append(PendingAudio::Buffers(1, tagged(tag, frames)));
}

std::vector<float> tagsOf(const PendingAudio::Buffers& buffers)
{
    return tags({buffers.begin(), buffers.end()});
}

TEST(PendingAudio, IsEmptyAtFirst)
{
    PendingAudio pending;
    EXPECT_EQ(pending.frames(), 0u);
    EXPECT_THAT(pending.takeAll(), IsEmpty());
}

TEST(PendingAudio, KeepsBuffersInTheOrderInWhichTheyCame)
{
    PendingAudio pending;
    EXPECT_THAT(append(pending, 1, 100), IsEmpty());
    EXPECT_THAT(append(pending, 2, 50), IsEmpty());
    EXPECT_THAT(tagsOf(pending.buffers()), ElementsAre(1, 2));
    EXPECT_EQ(pending.frames(), 150u);
}

TEST(PendingAudio, HoldsEighty4800FrameBuffersAndDropsTheOldestForTheNext)
{
    PendingAudio pending;
    for (int index = 1; index <= 80; ++index)
        EXPECT_THAT(append(pending, static_cast<float>(index), 4800), IsEmpty());
    EXPECT_EQ(pending.frames(), 384000u);

    EXPECT_THAT(tagsOf(append(pending, 81, 4800)), ElementsAre(1));
    EXPECT_EQ(pending.buffers().size(), 80u);
    EXPECT_EQ(pending.frames(), 384000u);
    EXPECT_EQ(tagsOf(pending.buffers()).front(), 2);
}

TEST(PendingAudio, DropsAsManyOldBuffersAsANewOneNeeds)
{
    PendingAudio pending;
    (void)append(pending, 1, 200000);
    (void)append(pending, 2, 100000);
    (void)append(pending, 3, 84000);
    EXPECT_THAT(tagsOf(append(pending, 4, 250000)), ElementsAre(1, 2));
    EXPECT_EQ(pending.frames(), 334000u);
}

TEST(PendingAudio, KeepsASingleBufferThatExceedsTheBoundAlone)
{
    PendingAudio pending;
    EXPECT_THAT(append(pending, 1, 500000), IsEmpty());
    EXPECT_EQ(pending.frames(), 500000u);
    EXPECT_EQ(pending.buffers().size(), 1u);
}

TEST(PendingAudio, ABufferThatExceedsTheBoundAloneDrivesOutAllOthersAndGoesWithTheNext)
{
    PendingAudio pending;
    (void)append(pending, 1, 100);
    EXPECT_THAT(tagsOf(append(pending, 2, 500000)), ElementsAre(1));
    EXPECT_THAT(tagsOf(append(pending, 3, 100)), ElementsAre(2));
    EXPECT_EQ(pending.frames(), 100u);
}

TEST(PendingAudio, TakingEverythingLeavesItEmpty)
{
    PendingAudio pending;
    (void)append(pending, 1, 100);
    (void)append(pending, 2, 100);
    EXPECT_THAT(tagsOf(pending.takeAll()), ElementsAre(1, 2));
    EXPECT_EQ(pending.frames(), 0u);
    EXPECT_THAT(pending.buffers(), IsEmpty());
}

TEST(PendingAudio, HandingBuffersInAndOutDoesNotCopyThem)
{
    PendingAudio pending;
    PendingAudio::Buffers node(1, tagged(1));
    const float* samples = node.front().floatSamples().data();
    (void)pending.append(std::move(node));
    EXPECT_EQ(pending.takeAll().front().floatSamples().data(), samples);
}

} // namespace
} // namespace corvandi::testing
