#include "system/audio/speech_channel.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <numbers>
#include <utility>

namespace corvandi {
namespace {

using ::testing::Each;
using ::testing::Le;

constexpr double sampleRate = 48000;
constexpr size_t framesPerHop = 480;

/// The value of a channel at a time in seconds.
using Signal = std::function<double(double time)>;

/// A syllable of 0.2 s and a gap of 0.1 s, one after the other.
Signal voice(double amplitude)
{
    return [amplitude](double time) {
        const bool isGap = std::fmod(time, 0.3) >= 0.2;
        return isGap ? 0 : amplitude * std::sin(2 * std::numbers::pi * 200 * time);
    };
}

/// A voice from one time to another, and silence around it.
Signal voiceBetween(double amplitude, double begin, double end)
{
    return [speaking = voice(amplitude), begin, end](double time) {
        return time >= begin && time < end ? speaking(time - begin) : 0;
    };
}

Signal hum(double amplitude)
{
    return [amplitude](double time) { return amplitude * std::sin(2 * std::numbers::pi * 50 * time); };
}

/// The same noise for the same seed, of this amplitude at most.
Signal noise(double amplitude, uint32_t seed)
{
    return [amplitude, state = seed](double /*time*/) mutable {
        state = state * 1664525 + 1013904223;
        return amplitude * (static_cast<double>(state) / 2147483648.0 - 1);
    };
}

Signal sum(const Signal& first, const Signal& second)
{
    return [first, second](double time) { return first(time) + second(time); };
}

/// What was given to the channels, and what was made of it.
struct Outcome {
    std::vector<std::vector<float>> channels;
    std::vector<float> mono;

    /// The number of frames between two times at which `mono` is not what `channel` is.
    [[nodiscard]] size_t differences(size_t channel, double begin, double end) const
    {
        size_t count = 0;
        const auto last = static_cast<size_t>(end * sampleRate);
        for (auto frame = static_cast<size_t>(begin * sampleRate); frame < last; ++frame)
            count += mono[frame] != channels[channel][frame] ? 1U : 0U;
        return count;
    }
};

Outcome listenTo(const std::vector<Signal>& signals, double seconds)
{
    Outcome outcome;
    outcome.channels.resize(signals.size());
    std::vector<float> interleaved;
    for (size_t frame = 0; frame < static_cast<size_t>(seconds * sampleRate); ++frame) {
        for (size_t channel = 0; channel < signals.size(); ++channel) {
            const auto value = static_cast<float>(signals[channel](static_cast<double>(frame) / sampleRate));
            outcome.channels[channel].push_back(value);
            interleaved.push_back(value);
        }
    }
    SpeechChannel(signals.size(), sampleRate).append(interleaved, outcome.mono);
    return outcome;
}

std::vector<float> steps(const std::vector<float>& samples)
{
    std::vector<float> result;
    for (size_t index = 1; index < samples.size(); ++index)
        result.push_back(std::abs(samples[index] - samples[index - 1]));
    return result;
}

TEST(SpeechChannel, OneChannelStaysAsItIs)
{
    EXPECT_EQ(listenTo({voice(0.5)}, 1).differences(0, 0, 1), 0U);
}

TEST(SpeechChannel, AnInvertedPairDoesNotCancel)
{
    const Outcome outcome = listenTo({voice(0.5), voice(-0.5)}, 2);
    EXPECT_EQ(outcome.differences(0, 0, 2), 0U);
}

TEST(SpeechChannel, TwoEqualChannelsGiveWhatEachOfThemIs)
{
    const Outcome outcome = listenTo({voice(0.5), voice(0.5)}, 2);
    EXPECT_EQ(outcome.differences(0, 0, 2), 0U);
}

TEST(SpeechChannel, SimilarChannelsDoNotAlternate)
{
    const Outcome outcome = listenTo(
        {sum(voice(0.4), noise(0.01, 1)), sum(voice(0.5), noise(0.01, 2)), sum(voice(0.3), noise(0.01, 3))},
        3);
    EXPECT_EQ(outcome.differences(0, 0, 3), 0U);
}

TEST(SpeechChannel, OneVoiceAmong18InputsIsHeardAsLoudAsItIs)
{
    std::vector<Signal> signals;
    for (uint32_t input = 0; input < 18; ++input)
        signals.push_back(noise(0.001, input));
    signals[12] = sum(voice(0.1), signals[12]);
    const Outcome outcome = listenTo(signals, 2);
    // Two hops: one to hear it, one to fade over to it.
    EXPECT_EQ(outcome.differences(12, 0.02, 2), 0U);
}

TEST(SpeechChannel, AfterAPauseTheSpeakersChannelIsTheOneThatIsTakenAlready)
{
    const Signal speaker = [](double time) {
        return voiceBetween(0.1, 0.2, 1)(time) + voiceBetween(0.1, 4, 5)(time);
    };
    const Outcome outcome = listenTo({noise(0.02, 1), sum(speaker, noise(0.001, 2))}, 5);
    EXPECT_EQ(outcome.differences(1, 0.23, 5), 0U);
}

TEST(SpeechChannel, AVoiceIsPreferredToALouderHum)
{
    const Outcome outcome = listenTo({hum(0.3), voiceBetween(0.1, 1, 3)}, 3);
    EXPECT_EQ(outcome.differences(0, 0, 1), 0U);
    EXPECT_EQ(outcome.differences(1, 1.02, 3), 0U);
}

TEST(SpeechChannel, TheLouderSideIsFollowedWhenItChanges)
{
    const Signal left = sum(voiceBetween(0.5, 0, 2), voiceBetween(0.05, 2, 4));
    const Signal right = sum(voiceBetween(0.05, 0, 2), voiceBetween(0.5, 2, 4));
    const Outcome outcome = listenTo({left, right}, 4);
    EXPECT_EQ(outcome.differences(0, 0, 2), 0U);
    // After 0.31 s of speech, which has a gap of 0.1 s.
    EXPECT_EQ(outcome.differences(1, 2.45, 4), 0U);
}

TEST(SpeechChannel, AChangeMakesNoClick)
{
    const auto tone = [](double first, double second) -> Signal {
        return [first, second](double time) {
            return (time < 1 ? first : second) * std::sin(2 * std::numbers::pi * 100 * time);
        };
    };
    const Outcome outcome = listenTo({tone(0.5, 0.05), tone(-0.05, -0.5)}, 2);
    ASSERT_EQ(outcome.differences(0, 0, 1), 0U);
    ASSERT_EQ(outcome.differences(1, 1.1, 2), 0U);
    // The steepest step of the tone itself, and what fading from one channel to the other adds.
    const double steepest = 0.5 * 2 * std::numbers::pi * 100 / sampleRate;
    EXPECT_THAT(steps(outcome.mono), Each(Le(steepest + 1.0 / framesPerHop)));
}

TEST(SpeechChannel, HowTheSoundIsCutMakesNoDifference)
{
    const std::vector<Signal> signals{voiceBetween(0.5, 0, 0.5), voiceBetween(0.5, 0.5, 1)};
    const Outcome whole = listenTo(signals, 1);
    for (const size_t frames : {1U, 7U, 480U, 2048U}) {
        SpeechChannel channel(2, sampleRate);
        std::vector<float> mono;
        std::vector<float> piece;
        for (size_t frame = 0; frame < whole.mono.size(); ++frame) {
            piece.push_back(whole.channels[0][frame]);
            piece.push_back(whole.channels[1][frame]);
            if (piece.size() == 2 * frames || frame + 1 == whole.mono.size())
                channel.append(std::exchange(piece, {}), mono);
        }
        EXPECT_EQ(mono, whole.mono) << frames;
    }
}

TEST(SpeechChannel, NothingIsHeldBack)
{
    SpeechChannel channel(3, sampleRate);
    std::vector<float> mono;
    channel.append(std::vector<float>(3, 0.5F), mono);
    EXPECT_EQ(mono.size(), 1U);
}

} // namespace
} // namespace corvandi
