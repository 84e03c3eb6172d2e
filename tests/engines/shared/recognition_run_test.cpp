#include "engines/shared/recognition_run.h"

#include "engines/shared/utterance_splitter.h"
#include "fake_utterance_decoder.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

namespace corvandi::testing {
namespace {

using ::testing::ElementsAre;

constexpr size_t oneSecond = 16000;

/// Something with the rhythm of speech that the voice detector takes for it: a buzz of many harmonics, loud
/// and soft four times a second.
std::vector<int16_t> buzz(size_t samples)
{
    std::vector<int16_t> sound(samples);
    for (size_t i = 0; i < samples; ++i) {
        const double time = static_cast<double>(i) / oneSecond;
        double value = 0;
        for (int harmonic = 1; harmonic <= 20; ++harmonic)
            value += std::sin(2 * std::numbers::pi * 140 * harmonic * time) / harmonic;
        const double loud = std::max(0.0, std::sin(2 * std::numbers::pi * 4 * time));
        sound[i] = static_cast<int16_t>(3000 * value * loud);
    }
    return sound;
}

class RecognitionRunTest : public ::testing::Test {
protected:
    void say(const std::vector<int16_t>& sound)
    {
        AudioStream::Node node;
        node.emplace_back(engineFormat, sound);
        input->yield(std::move(node));
    }
    void recognise()
    {
        input->finish();
        run.recognise({decoder, [](const QString& why) -> UtteranceDecoder& { throw Error(why); }, gain},
                      [this](const QString& text) { texts.push_back(text.toStdString()); });
    }

    FakeUtteranceDecoder decoder;
    SpeechGain gain;
    std::shared_ptr<AudioStream> input = std::make_shared<AudioStream>();
    RecognitionRun run{input};
    std::vector<std::string> texts;
};

TEST_F(RecognitionRunTest, DecodesWhatIsSaid)
{
    say(buzz(2 * oneSecond));
    recognise();
    EXPECT_EQ(decoder.calls, "stream begin end ");
    EXPECT_EQ(texts.size(), 2U);
    EXPECT_GT(decoder.heard, oneSecond);
}

TEST_F(RecognitionRunTest, AllIsWellAfterACancellationBeforeTheBeginning)
{
    say(buzz(2 * oneSecond));
    run.cancel();
    recognise();
    EXPECT_THAT(texts, ElementsAre());
}

TEST_F(RecognitionRunTest, ACancellationEndsALongDecodeAtOnceAndItsUtteranceToo)
{
    say(buzz(15 * oneSecond));
    decoder.onFeed = [this] {
        if (decoder.heard > oneSecond)
            run.cancel();
    };
    recognise();
    // All of it lay in one buffer.
    EXPECT_LT(decoder.heard, oneSecond * 11 / 10);
    EXPECT_EQ(decoder.calls, "stream begin drop ");
    EXPECT_THAT(texts, ElementsAre());
}

} // namespace
} // namespace corvandi::testing
