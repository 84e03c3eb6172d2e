#include "system/audio/speex_audio_converter.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvandi {
namespace {

constexpr AudioFormat engine{16000, 1, SampleFormat::int16};

double sine(double frequency, double time)
{
    return std::sin(2 * std::numbers::pi * frequency * time);
}

/// A sine of half of full scale, the same in all channels.
AudioBuffer tone(const AudioFormat& format, double frequency, double seconds)
{
    std::vector<float> floats;
    std::vector<int16_t> integers;
    const auto frames = static_cast<size_t>(format.sampleRate * seconds);
    for (size_t frame = 0; frame < frames; ++frame) {
        const double value = 0.5 * sine(frequency, static_cast<double>(frame) / format.sampleRate);
        for (uint32_t channel = 0; channel < format.channelCount; ++channel) {
            floats.push_back(static_cast<float>(value));
            integers.push_back(static_cast<int16_t>(std::lrint(value * 32768)));
        }
    }
    if (format.sampleFormat == SampleFormat::float32)
        return {format, floats};
    return {format, integers};
}

std::vector<AudioBuffer> split(const AudioBuffer& whole, size_t framesPerPart)
{
    std::vector<AudioBuffer> parts;
    const auto samples = whole.floatSamples();
    const size_t step = framesPerPart * whole.format().channelCount;
    for (size_t at = 0; at < samples.size(); at += step) {
        const auto part = samples.subspan(at, std::min(step, samples.size() - at));
        parts.emplace_back(whole.format(), std::vector<float>(part.begin(), part.end()));
    }
    return parts;
}

std::vector<int16_t> convertAll(AudioConverter& converter, const std::vector<AudioBuffer>& buffers)
{
    std::vector<int16_t> result;
    for (const AudioBuffer& buffer : buffers) {
        // Twice as long at most, when the sound comes at 8 kHz.
        const Conversion conversion = converter.convert(buffer, 2 * buffer.frameLength() + 1024);
        EXPECT_FALSE(conversion.error);
        const auto samples = conversion.output.int16Samples();
        result.insert(result.end(), samples.begin(), samples.end());
    }
    return result;
}

std::unique_ptr<AudioConverter> makeConverter(const AudioFormat& from, const AudioFormat& to = engine)
{
    return SpeexAudioConverterFactory().create(from, to);
}

class EveryFormat : public ::testing::TestWithParam<AudioFormat> {};

TEST_P(EveryFormat, AToneKeepsItsHeightItsLoudnessAndItsPlaceInTime)
{
    const auto converter = makeConverter(GetParam());
    ASSERT_TRUE(converter);
    const auto output = convertAll(*converter, {tone(GetParam(), 440, 1)});
    ASSERT_NEAR(static_cast<double>(output.size()), 16000, 100);
    double worst = 0;
    // The resampler's filter starts from silence.
    for (size_t i = 200; i < output.size(); ++i)
        worst = std::max(worst, std::abs(output[i] - 16384 * sine(440, static_cast<double>(i) / 16000)));
    // One percent.
    EXPECT_LT(worst, 164);
}

INSTANTIATE_TEST_SUITE_P(Rates, EveryFormat,
                         ::testing::Values(AudioFormat{48000, 1, SampleFormat::float32},
                                           AudioFormat{48000, 2, SampleFormat::float32},
                                           AudioFormat{48000, 8, SampleFormat::float32},
                                           AudioFormat{44100, 2, SampleFormat::float32},
                                           AudioFormat{44100, 1, SampleFormat::int16},
                                           AudioFormat{96000, 3, SampleFormat::float32},
                                           AudioFormat{16000, 1, SampleFormat::float32},
                                           AudioFormat{16000, 2, SampleFormat::int16},
                                           AudioFormat{8000, 1, SampleFormat::float32}));

class EveryRate : public ::testing::TestWithParam<double> {};

TEST_P(EveryRate, BufferByBufferGivesTheSameAsAllAtOnce)
{
    const AudioFormat format{GetParam(), 1, SampleFormat::float32};
    const AudioBuffer whole = tone(format, 1000, 1);
    const auto atOnce = convertAll(*makeConverter(format), {whole});
    for (const size_t frames : {2048U, 480U, 441U, 1U, 7U})
        EXPECT_EQ(convertAll(*makeConverter(format), split(whole, frames)), atOnce) << frames;
}

INSTANTIATE_TEST_SUITE_P(Rates, EveryRate, ::testing::Values(48000, 44100, 96000, 8000, 16000));

TEST(SpeexAudioConverter, WhatItCannotHear8kHzDoesNotComeBackAsSomethingElse)
{
    const AudioFormat format{48000, 1, SampleFormat::float32};
    const auto output = convertAll(*makeConverter(format), {tone(format, 10000, 1)});
    const auto loudest = std::max_element(output.begin() + 200, output.end() - 200);
    // 40 dB below the tone.
    EXPECT_LT(*loudest, 164);
}

TEST(SpeexAudioConverter, ChannelsOfOppositeSignsDoNotCancelEachOther)
{
    const AudioFormat format{16000, 2, SampleFormat::float32};
    const auto converter = makeConverter(format);
    const AudioBuffer buffer(format, std::vector<float>{0.5F, -0.5F, -0.25F, 0.25F});
    EXPECT_THAT(convertAll(*converter, {buffer}), ::testing::ElementsAre(16384, -8192));
}

TEST(SpeexAudioConverter, TooLoudSoundIsClipped)
{
    const AudioFormat format{16000, 1, SampleFormat::float32};
    const AudioBuffer buffer(format, std::vector<float>{2.0F, 1.0F, -1.0F, -3.0F});
    EXPECT_THAT(convertAll(*makeConverter(format), {buffer}),
                ::testing::ElementsAre(32767, 32767, -32768, -32768));
}

TEST(SpeexAudioConverter, MakesNoMoreThanTheCapacityAndKeepsTheRest)
{
    const AudioFormat format{48000, 1, SampleFormat::float32};
    const AudioBuffer whole = tone(format, 440, 0.1);
    const auto expected = convertAll(*makeConverter(format), {whole});

    const auto converter = makeConverter(format);
    std::vector<int16_t> result;
    AudioBuffer next = whole;
    while (result.size() < expected.size()) {
        const Conversion conversion = converter->convert(next, 100);
        const auto samples = conversion.output.int16Samples();
        ASSERT_LE(samples.size(), 100U);
        ASSERT_FALSE(samples.empty());
        result.insert(result.end(), samples.begin(), samples.end());
        next = AudioBuffer(format, std::vector<float>());
    }
    EXPECT_EQ(result, expected);
}

TEST(SpeexAudioConverter, TakesABufferInAlsoWhenItHasNoRoomForTheSoundBefore)
{
    const AudioFormat format{48000, 1, SampleFormat::float32};
    const AudioBuffer whole = tone(format, 440, 0.1);
    const auto converter = makeConverter(format);
    std::vector<int16_t> result;
    for (const AudioBuffer& part : split(whole, 1024)) {
        const Conversion conversion = converter->convert(part, 1);
        ASSERT_EQ(conversion.output.int16Samples().size(), 1U);
        result.push_back(conversion.output.int16Samples().front());
    }
    const Conversion rest = converter->convert(AudioBuffer(format, std::vector<float>()), 10000);
    const auto samples = rest.output.int16Samples();
    result.insert(result.end(), samples.begin(), samples.end());
    EXPECT_EQ(result, convertAll(*makeConverter(format), {whole}));
}

TEST(SpeexAudioConverter, AnEmptyBufferGivesNoSoundAndNoError)
{
    const AudioFormat format{48000, 1, SampleFormat::float32};
    const Conversion conversion =
        makeConverter(format)->convert(AudioBuffer(format, std::vector<float>()), 100);
    EXPECT_EQ(conversion.output.frameLength(), 0U);
    EXPECT_FALSE(conversion.error);
}

TEST(SpeexAudioConverter, HoldsBackNoMoreThanTheResamplersDelay)
{
    const AudioFormat format{48000, 1, SampleFormat::float32};
    const auto output = convertAll(*makeConverter(format), {tone(format, 440, 1)});
    EXPECT_LT(output.size(), 16000U);
    // 2.5 ms, and what is left of a frame.
    EXPECT_GE(output.size(), 16000U - 41);
}

TEST(SpeexAudioConverter, ABufferInAnotherFormatIsAnError)
{
    const auto converter = makeConverter({48000, 1, SampleFormat::float32});
    const AudioBuffer other = tone({44100, 1, SampleFormat::float32}, 440, 0.1);
    EXPECT_TRUE(converter->convert(other, 10000).error);
}

TEST(SpeexAudioConverter, MakesFloatsToo)
{
    const AudioFormat format{48000, 1, SampleFormat::float32};
    const auto converter = makeConverter(format, {16000, 1, SampleFormat::float32});
    const AudioBuffer whole = tone(format, 440, 0.1);
    const Conversion conversion = converter->convert(whole, 10000);
    EXPECT_EQ(conversion.output.floatSamples().size(), conversion.output.frameLength());
    EXPECT_GT(conversion.output.frameLength(), 1500U);
}

TEST(SpeexAudioConverterFactory, HaveNoneForWhatIsNoSound)
{
    EXPECT_FALSE(makeConverter({0, 0, SampleFormat::float32}));
    EXPECT_FALSE(makeConverter({48000, 0, SampleFormat::float32}));
    EXPECT_FALSE(makeConverter({48000.5, 1, SampleFormat::float32}));
    EXPECT_FALSE(makeConverter({48000, 1, SampleFormat::float32}, {16000, 2, SampleFormat::int16}));
}

} // namespace
} // namespace corvandi
