#include "engines/shared/speech_gain.h"

#include "engines/shared/loudness.h"

#include <gtest/gtest.h>

#include <cmath>

namespace corvandi {
namespace {

using Frame = std::vector<int16_t>;

/// 20 ms of a level in dB below full scale.
Frame frameOf(double level)
{
    const auto amplitude = static_cast<int16_t>(std::lrint(32768 * std::pow(10, level / 20)));
    Frame frame(320);
    for (size_t i = 0; i < frame.size(); ++i)
        frame[i] = static_cast<int16_t>(i % 2 == 0 ? amplitude : -amplitude);
    return frame;
}

void speak(SpeechGain& gain, double level, int frames)
{
    for (int i = 0; i < frames; ++i)
        gain.learn(frameOf(level));
}

double heard(const SpeechGain& gain, double level)
{
    return loudness(gain.apply(frameOf(level)));
}

TEST(SpeechGain, LeavesSoundAsItIsBeforeItHasHeardAVoice)
{
    EXPECT_EQ(SpeechGain().apply(frameOf(-40)), frameOf(-40));
    EXPECT_EQ(SpeechGain().level(), std::nullopt);
}

TEST(SpeechGain, BringsSoftVoicesToTheSoftestUsualLevel)
{
    for (const double level : {-39.0, -45.0, -60.0}) {
        SpeechGain gain;
        speak(gain, level, 10);
        EXPECT_NEAR(heard(gain, level), -38, 0.5) << level;
    }
}

TEST(SpeechGain, BringsLoudVoicesToTheLoudestUsualLevel)
{
    SpeechGain gain;
    speak(gain, -8, 10);
    EXPECT_NEAR(heard(gain, -8), -20, 0.5);
}

TEST(SpeechGain, LeavesUsualVoicesAsTheyAre)
{
    for (const double level : {-37.0, -26.0, -21.0}) {
        SpeechGain gain;
        speak(gain, level, 10);
        EXPECT_EQ(gain.apply(frameOf(level)), frameOf(level)) << level;
    }
}

TEST(SpeechGain, FollowsSlowlySoThatSoftSoundsStaySoft)
{
    SpeechGain gain;
    speak(gain, -45, 100);
    speak(gain, -55, 5);
    EXPECT_LT(heard(gain, -55), -46);
}

TEST(SpeechGain, ANewDictationFindsItsLevelWithinASecond)
{
    SpeechGain gain;
    speak(gain, -20, 500);
    gain.beginDictation();
    speak(gain, -55, 50);
    EXPECT_NEAR(heard(gain, -55), -38, 8);
}

TEST(SpeechGain, BeginsWhereAnEarlierOneHasEnded)
{
    const SpeechGain gain(-50);
    EXPECT_NEAR(heard(gain, -50), -38, 0.5);
}

TEST(SpeechGain, IgnoresALevelThatNoMicrophoneCanHave)
{
    EXPECT_EQ(SpeechGain(12).level(), std::nullopt);
    EXPECT_EQ(SpeechGain(-500).level(), std::nullopt);
    EXPECT_EQ(SpeechGain(std::nan("")).level(), std::nullopt);
}

TEST(SpeechGain, ClipsRatherThanWraps)
{
    SpeechGain gain;
    speak(gain, -60, 50);
    for (const int16_t sample : gain.apply(Frame(320, 30000)))
        EXPECT_EQ(sample, 32767);
}

} // namespace
} // namespace corvandi
