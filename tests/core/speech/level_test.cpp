#include "core/speech/audio_engine.h"

#include "core/speech/sounds.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace corvandi::testing {
namespace {

AudioBuffer mono(std::vector<float> samples)
{
    return {microphoneFormat, std::move(samples)};
}

TEST(Level, IsZeroForSilence)
{
    EXPECT_EQ(level(tagged(0)), 0.0F);
}

TEST(Level, IsOneForAFullScaleSquareWave)
{
    std::vector<float> samples;
    for (int index = 0; index < 2048; ++index)
        samples.push_back(index % 2 == 0 ? 1.0F : -1.0F);
    EXPECT_FLOAT_EQ(level(mono(samples)), 1.0F);
}

TEST(Level, OfASineIsItsAmplitudeOverTheSquareRootOfTwo)
{
    std::vector<float> samples;
    for (int index = 0; index < 2048; ++index)
        samples.push_back(0.5F * static_cast<float>(std::sin(2 * std::numbers::pi * index / 64)));
    EXPECT_NEAR(level(mono(samples)), 0.5 / std::numbers::sqrt2, 1e-6);
}

TEST(Level, CountsEverySampleWhateverTheirNumber)
{
    // One loud sample at the end: it must count both in and behind the blocks that are summed at once.
    for (size_t count = 1; count <= 40; ++count) {
        std::vector<float> samples(count, 0.0F);
        samples.back() = 1.0F;
        EXPECT_FLOAT_EQ(level(mono(samples)), 1.0F / std::sqrt(static_cast<float>(count))) << count;
    }
}

TEST(Level, CountsTheFirstChannelOnly)
{
    std::vector<float> samples;
    for (int frame = 0; frame < 37; ++frame)
        samples.insert(samples.end(), {0.25F, 1.0F, -1.0F});
    const AudioFormat threeChannels{48000, 3, SampleFormat::float32};
    EXPECT_FLOAT_EQ(level({threeChannels, samples}), 0.25F);
}

TEST(Level, CountsEveryFrameOfInterleavedSoundWhateverTheirNumber)
{
    const AudioFormat stereo{48000, 2, SampleFormat::float32};
    for (size_t count = 1; count <= 40; ++count) {
        std::vector<float> samples(2 * count, 0.0F);
        samples[2 * (count - 1)] = 1.0F;
        EXPECT_FLOAT_EQ(level({stereo, samples}), 1.0F / std::sqrt(static_cast<float>(count))) << count;
    }
}

TEST(Level, IsZeroForAnEmptyBuffer)
{
    EXPECT_EQ(level(tagged(1, 0)), 0.0F);
    EXPECT_EQ(level(AudioBuffer()), 0.0F);
}

TEST(Level, IsZeroWithoutFloatSamples)
{
    const AudioFormat integers{48000, 1, SampleFormat::int16};
    EXPECT_EQ(level({integers, std::vector<int16_t>(2048, 32767)}), 0.0F);
}

} // namespace
} // namespace corvandi::testing
