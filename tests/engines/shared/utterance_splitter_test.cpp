#include "engines/shared/utterance_splitter.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

constexpr size_t samplesPerMillisecond = 16;
constexpr int16_t voice = 1000;

struct Utterance {
    std::chrono::milliseconds pauseBefore;
    std::vector<int16_t> samples;
    bool hasEnded = false;

    [[nodiscard]] std::chrono::milliseconds length() const
    {
        return std::chrono::milliseconds(samples.size() / samplesPerMillisecond);
    }
};

class RecordingSink : public UtteranceSink {
public:
    void beginUtterance(std::chrono::milliseconds pauseBefore) override
    {
        utterances.push_back({pauseBefore, {}});
    }
    void sound(std::span<const int16_t> samples) override
    {
        auto& all = utterances.back().samples;
        all.insert(all.end(), samples.begin(), samples.end());
    }
    void endUtterance() override { utterances.back().hasEnded = true; }

    std::vector<Utterance> utterances;
};

class UtteranceSplitterTest : public ::testing::Test {
protected:
    void hear(int16_t level, std::chrono::milliseconds time)
    {
        const size_t count = static_cast<size_t>(time.count()) * samplesPerMillisecond;
        splitter.feed(std::vector<int16_t>(count, level));
    }
    void speak(std::chrono::milliseconds time) { hear(voice, time); }
    void pause(std::chrono::milliseconds time) { hear(0, time); }

    RecordingSink sink;
    UtteranceSplitter splitter{sink, [](std::span<const int16_t> frame) {
                                   return std::any_of(frame.begin(), frame.end(),
                                                      [](int16_t sample) { return sample >= voice; });
                               }};
};

TEST_F(UtteranceSplitterTest, SilenceIsNoUtterance)
{
    pause(5s);
    splitter.finish();
    EXPECT_TRUE(sink.utterances.empty());
}

TEST_F(UtteranceSplitterTest, AClickIsNoUtterance)
{
    pause(1s);
    speak(20ms);
    pause(1s);
    splitter.finish();
    EXPECT_TRUE(sink.utterances.empty());
}

TEST_F(UtteranceSplitterTest, AnUtteranceBringsTheSoundRightBeforeIt)
{
    pause(1s);
    speak(1s);
    splitter.finish();
    ASSERT_EQ(sink.utterances.size(), 1U);
    // 300 ms of what came before, the onset's 40 ms among them.
    EXPECT_EQ(sink.utterances[0].length(), 1260ms);
    EXPECT_EQ(sink.utterances[0].samples.front(), 0);
    EXPECT_TRUE(sink.utterances[0].hasEnded);
}

TEST_F(UtteranceSplitterTest, APauseEndsTheUtteranceWhileTheSoundGoesOn)
{
    speak(1s);
    pause(380ms);
    ASSERT_EQ(sink.utterances.size(), 1U);
    EXPECT_FALSE(sink.utterances[0].hasEnded);
    pause(20ms);
    EXPECT_TRUE(sink.utterances[0].hasEnded);
}

TEST_F(UtteranceSplitterTest, AShortBreakEndsNothing)
{
    speak(1s);
    pause(380ms);
    speak(1s);
    splitter.finish();
    EXPECT_EQ(sink.utterances.size(), 1U);
}

TEST_F(UtteranceSplitterTest, ToldIsHowLongThePauseWas)
{
    pause(100ms);
    speak(1s);
    pause(900ms);
    speak(1s);
    ASSERT_EQ(sink.utterances.size(), 2U);
    EXPECT_EQ(sink.utterances[0].pauseBefore, 100ms);
    EXPECT_EQ(sink.utterances[1].pauseBefore, 900ms);
}

TEST_F(UtteranceSplitterTest, PiecesOfAnySizeGiveTheSameUtterances)
{
    std::vector<int16_t> sound(16000, int16_t{0});
    for (size_t i = 0; i < 16000; ++i)
        sound.push_back(static_cast<int16_t>(voice + static_cast<int16_t>(i % 7)));
    splitter.feed(sound);
    splitter.finish();

    RecordingSink inPieces;
    UtteranceSplitter other{inPieces, [](std::span<const int16_t> frame) { return frame.front() >= voice; }};
    for (size_t at = 0; at < sound.size(); at += 683)
        other.feed(std::span(sound).subspan(at, std::min<size_t>(683, sound.size() - at)));
    other.finish();

    ASSERT_EQ(sink.utterances.size(), 1U);
    ASSERT_EQ(inPieces.utterances.size(), 1U);
    EXPECT_EQ(sink.utterances[0].samples, inPieces.utterances[0].samples);
}

TEST_F(UtteranceSplitterTest, TheLastIncompleteFrameIsNotLost)
{
    speak(1s);
    splitter.feed(std::vector<int16_t>(100, voice));
    splitter.finish();
    ASSERT_EQ(sink.utterances.size(), 1U);
    EXPECT_EQ(sink.utterances[0].samples.size(), 16100U);
}

TEST_F(UtteranceSplitterTest, ASpeakerWithoutPausesIsCutAtTheNextDip)
{
    speak(19500ms);
    hear(voice / 2, 20ms);
    speak(1s);
    ASSERT_EQ(sink.utterances.size(), 1U);
    EXPECT_FALSE(sink.utterances[0].hasEnded);
    // As quiet as the quietest moment of the last seconds.
    hear(voice / 2, 20ms);
    EXPECT_TRUE(sink.utterances[0].hasEnded);
    speak(1s);
    ASSERT_EQ(sink.utterances.size(), 2U);
    EXPECT_LT(sink.utterances[1].pauseBefore, 100ms);
}

TEST_F(UtteranceSplitterTest, ASpeakerWithoutPausesAndDipsIsCutAfter22Seconds)
{
    for (int16_t level = voice; level < voice + 1150; ++level)
        hear(level, 20ms);
    splitter.finish();
    ASSERT_EQ(sink.utterances.size(), 2U);
    EXPECT_GE(sink.utterances[0].length(), 22s);
    EXPECT_LT(sink.utterances[0].length(), 22100ms);
}

TEST_F(UtteranceSplitterTest, NoSoundIsLostBetweenTwoUtterancesWithoutAPause)
{
    for (int16_t level = voice; level < voice + 1150; ++level)
        hear(level, 20ms);
    splitter.finish();
    size_t total = 0;
    for (const Utterance& utterance : sink.utterances)
        total += utterance.samples.size();
    EXPECT_EQ(total, 1150 * UtteranceSplitter::samplesPerFrame);
}

} // namespace
} // namespace corvandi
