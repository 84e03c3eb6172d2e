#include "engines/shared/utterance_splitter.h"

#include "support/transcribing.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

/// How many of the sound's frames are voice.
size_t voicedFrames(const testing::Samples& sound)
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
    EXPECT_EQ(voicedFrames(testing::Samples(16000)), 0U);
}

TEST(VoiceDetector, AHumanIsHeardForMostOfTheTimeInWhichHeSpeaks)
{
    const testing::Samples sound = testing::humanRecordings().front().load();
    const size_t frames = sound.size() / VoiceDetector::samplesPerFrame;
    EXPECT_GT(voicedFrames(sound), frames / 2);
}

} // namespace
} // namespace corvandi
