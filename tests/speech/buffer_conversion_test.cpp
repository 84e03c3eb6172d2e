#include "speech/buffer_conversion.h"

#include "speech/sounds.h"
#include "support/fake_audio_converter.h"

#include <gmock/gmock.h>

namespace corvandi::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
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

    FakeAudioConverters converters;
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

TEST_F(BufferConversionTest, TheSourceIsHandedOverOnceAndThenTheConverterIsToldToWait)
{
    (void)convert(tagged(1));
    ASSERT_THAT(converters.calls(), SizeIs(1));
    EXPECT_THAT(converters.calls().front().answers,
                ElementsAre(ConverterInputStatus::haveData, ConverterInputStatus::noDataNow));
}

TEST_F(BufferConversionTest, AFailedConversionGivesItsErrorAndNoSound)
{
    converters.behaviour = FakeAudioConverters::Behaviour::failsWithError;
    const BufferConversion conversion = convert(tagged(1));
    EXPECT_FALSE(conversion.buffer);
    EXPECT_EQ(conversion.error, QStringLiteral("the resampler broke"));
}

TEST_F(BufferConversionTest, AnEmptyOutputIsNoSound)
{
    converters.behaviour = FakeAudioConverters::Behaviour::givesNothing;
    const BufferConversion conversion = convert(tagged(1));
    EXPECT_FALSE(conversion.buffer);
    EXPECT_FALSE(conversion.error);
}

TEST_F(BufferConversionTest, WithoutMemoryForTheOutputThereIsNoSound)
{
    converters.behaviour = FakeAudioConverters::Behaviour::runsOutOfMemory;
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
