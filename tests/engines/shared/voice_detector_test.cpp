#include "engines/shared/voice_detector.h"

#include "support/sound_conditions.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

using testing::Noise;
using testing::Samples;

/// How many of the sound's frames are voice.
size_t voicedFrames(const Samples& sound)
{
    VoiceDetector detector;
    size_t voiced = 0;
    constexpr size_t frame = VoiceDetector::samplesPerFrame;
    for (size_t at = 0; at + frame <= sound.size(); at += frame)
        voiced += detector.hears(std::span(sound).subspan(at, frame)) ? 1 : 0;
    return voiced;
}

TEST(VoiceDetector, DigitalSilenceIsNoVoice)
{
    EXPECT_EQ(voicedFrames(Samples(16000)), 0U);
}

TEST(VoiceDetector, AHumanIsHeardForMostOfTheTimeInWhichHeSpeaks)
{
    const Samples sound = testing::humanRecordings().front().load();
    const size_t frames = sound.size() / VoiceDetector::samplesPerFrame;
    EXPECT_GT(voicedFrames(sound), frames / 2);
}

TEST(VoiceDetector, AMicrophoneThatIsTurnedDownIsHeardAsWell)
{
    const Samples sound = testing::humanRecordings().front().load();
    const size_t frames = sound.size() / VoiceDetector::samplesPerFrame;
    for (const double level : {-40.0, -50.0, -55.0, -60.0})
        EXPECT_GT(voicedFrames(testing::atLevel(sound, level)), frames / 2) << level;
}

TEST(VoiceDetector, NoiseOfAnyLevelIsNoVoice)
{
    for (const Noise kind : {Noise::white, Noise::pink}) {
        for (const double level : {-80.0, -70.0, -60.0, -50.0, -40.0, -30.0, -20.0})
            EXPECT_LT(voicedFrames(testing::noise(kind, 10 * 16000, level)), 3U) << level;
    }
}

} // namespace
} // namespace corvandi
