#include "base/error.h"
#include "engines/pocketsphinx/model_files.h"
#include "engines/pocketsphinx/pocketsphinx_framework.h"
#include "harness/word_errors.h"
#include "support/event_loop.h"
#include "support/transcribing.h"
#include "system/process/qt_main_queue.h"

#include <gmock/gmock.h>

#include <cmath>
#include <random>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using testing::Pace;
using testing::Samples;
using testing::Transcription;

constexpr size_t oneSecond = 16000;

/// Decoding is a matter of seconds on a machine that has much else to do.
template<class Condition>
bool waitUntil(Condition condition)
{
    return testing::waitUntil(condition, 30s);
}

Samples recording(size_t index)
{
    return testing::humanRecordings().at(index).load();
}

/// "Go forward ten meters."
Samples goForward()
{
    return recording(10);
}
/// "Go somewhere and do something."
Samples goSomewhere()
{
    return recording(11);
}

void append(Samples& sound, const Samples& more)
{
    sound.insert(sound.end(), more.begin(), more.end());
}

/// Background noise of a room, `level` of full scale.
Samples noise(size_t count, double level)
{
    std::mt19937 generator(1); // NOLINT: the same noise in each run
    std::normal_distribution<double> sample(0, level * 32768);
    Samples sound(count);
    for (int16_t& each : sound)
        each = static_cast<int16_t>(std::lrint(std::clamp(sample(generator), -32768.0, 32767.0)));
    return sound;
}

std::shared_ptr<AudioStream> streamOf(const Samples& sound)
{
    auto stream = std::make_shared<AudioStream>();
    AudioStream::Node node;
    node.emplace_back(AudioFormat{16000, 1, SampleFormat::int16}, sound);
    stream->yield(std::move(node));
    return stream;
}

/// What becomes of a task, for a test to look at.
struct Outcome {
    bool hasEnded = false;
    std::optional<QString> failure;
    std::vector<QString> texts;
    bool hasRequest = false;
};

QCoro::Task<> observe(QCoro::Task<> task, Outcome& outcome)
{
    try {
        co_await std::move(task);
    } catch (const Error& error) {
        outcome.failure = error.description();
    }
    outcome.hasEnded = true;
}

QCoro::Task<> collect(std::shared_ptr<SpeechTranscriber> transcriber, Outcome& outcome)
{
    try {
        while (true) {
            std::optional<SpeechResult> result = co_await transcriber->nextResult();
            if (!result)
                break;
            outcome.texts.push_back(result->text);
        }
    } catch (const Error& error) {
        outcome.failure = error.description();
    }
    outcome.hasEnded = true;
}

QCoro::Task<> install(SpeechFramework& framework, Outcome& asked, Outcome& installed)
{
    std::unique_ptr<AssetInstallationRequest> request;
    try {
        std::shared_ptr<SpeechTranscriber> transcriber =
            framework.makeTranscriber(Locale(QStringLiteral("en-US")));
        request = co_await framework.assetInstallationRequest(transcriber);
    } catch (const Error& error) {
        asked.failure = error.description();
    }
    asked.hasRequest = request != nullptr;
    asked.hasEnded = true;
    if (request)
        co_await observe(request->downloadAndInstall(), installed);
}

/// One dictation, step by step.
struct Session {
    explicit Session(SpeechFramework& framework)
        : transcriber(framework.makeTranscriber(Locale(QStringLiteral("en-US"))))
        , analyzer(framework.makeAnalyzer(transcriber))
    {
    }
    void start(std::shared_ptr<AudioStream> input)
    {
        starting.emplace(observe(analyzer->start(std::move(input)), started));
        collecting.emplace(collect(transcriber, results));
    }
    void finalize()
    {
        finalizing.emplace(observe(analyzer->finalizeAndFinishThroughEndOfInput(), finalized));
    }
    [[nodiscard]] QString text() const
    {
        return QStringList(results.texts.begin(), results.texts.end()).join(QString());
    }

    std::shared_ptr<SpeechTranscriber> transcriber;
    std::shared_ptr<SpeechAnalyzer> analyzer;
    Outcome started;
    Outcome results;
    Outcome finalized;
    std::optional<QCoro::Task<>> starting;
    std::optional<QCoro::Task<>> collecting;
    std::optional<QCoro::Task<>> finalizing;
};

class PocketSphinxTest : public ::testing::Test {
protected:
    QtMainQueue queue;
    std::unique_ptr<PocketSphinxFramework> framework =
        std::make_unique<PocketSphinxFramework>(installedModelFolder(), queue);
};

TEST_F(PocketSphinxTest, UnderstandsHumanSpeech)
{
    size_t errors = 0;
    size_t words = 0;
    for (const auto& item : testing::humanRecordings()) {
        const Transcription transcript = testing::transcribe(*framework, item.load(), Pace::asFastAsPossible);
        const std::string reference = item.reference.toStdString();
        errors += harness::wordErrors(reference, transcript.text.toStdString());
        words += harness::wordsOf(reference).size();
    }
    EXPECT_EQ(words, 105U);
    // 17 % when it was written; a fifth is where dictation is no help any more.
    EXPECT_LE(errors, 21U);
}

TEST_F(PocketSphinxTest, WritesSentences)
{
    const Transcription transcript = testing::transcribe(*framework, goForward(), Pace::asFastAsPossible);
    EXPECT_EQ(transcript.text.toStdString(), "Go forward ten meters.");
}

TEST_F(PocketSphinxTest, DigitalSilenceGivesNoText)
{
    const Transcription transcript =
        testing::transcribe(*framework, Samples(5 * oneSecond), Pace::asFastAsPossible);
    EXPECT_EQ(transcript.text.toStdString(), "");
}

TEST_F(PocketSphinxTest, NoiseGivesNoText)
{
    for (const double level : {0.0003, 0.001, 0.003, 0.01, 0.03}) {
        const Transcription transcript =
            testing::transcribe(*framework, noise(5 * oneSecond, level), Pace::asFastAsPossible);
        EXPECT_EQ(transcript.text.toStdString(), "") << level;
    }
}

TEST_F(PocketSphinxTest, NoSoundAtAllGivesNoText)
{
    const Transcription transcript = testing::transcribe(*framework, {}, Pace::asFastAsPossible);
    EXPECT_EQ(transcript.text.toStdString(), "");
}

TEST_F(PocketSphinxTest, EachPauseYieldsAFinalResultWhileTheSpeakerGoesOn)
{
    Samples sound = goSomewhere();
    append(sound, Samples(oneSecond));
    Session session(*framework);
    const auto stream = streamOf(sound);
    session.start(stream);
    ASSERT_TRUE(waitUntil([&] { return !session.results.texts.empty(); }));
    EXPECT_FALSE(session.results.hasEnded);

    AudioStream::Node more;
    more.emplace_back(AudioFormat{16000, 1, SampleFormat::int16}, goForward());
    stream->yield(std::move(more));
    stream->finish();
    session.finalize();
    ASSERT_TRUE(waitUntil([&] { return session.results.hasEnded && session.finalized.hasEnded; }));
    EXPECT_EQ(session.text().toStdString(), "Go somewhere and do something. Go forward ten meters.");
}

TEST_F(PocketSphinxTest, AnalyzersOneAfterTheOtherWork)
{
    for (int i = 0; i < 3; ++i) {
        const Transcription transcript = testing::transcribe(*framework, goForward(), Pace::asFastAsPossible);
        EXPECT_EQ(transcript.text.toStdString(), "Go forward ten meters.");
    }
}

TEST_F(PocketSphinxTest, AnAnalyzerThatStartsWhileAnotherFinalizesGetsItsTurn)
{
    Session first(*framework);
    Session second(*framework);
    const auto firstInput = streamOf(goSomewhere());
    const auto secondInput = streamOf(goForward());
    first.start(firstInput);
    ASSERT_TRUE(waitUntil([&] { return first.started.hasEnded; }));
    firstInput->finish();
    first.finalize();
    second.start(secondInput);
    ASSERT_TRUE(waitUntil([&] { return second.started.hasEnded; }));
    EXPECT_FALSE(second.started.failure);
    secondInput->finish();
    second.finalize();
    ASSERT_TRUE(waitUntil([&] { return first.finalized.hasEnded && second.finalized.hasEnded; }));
    ASSERT_TRUE(waitUntil([&] { return first.results.hasEnded && second.results.hasEnded; }));
    EXPECT_EQ(first.text().toStdString(), "Go somewhere and do something.");
    EXPECT_EQ(second.text().toStdString(), "Go forward ten meters.");
}

TEST_F(PocketSphinxTest, TheLastResultComesBeforeFinalizingEnds)
{
    Session session(*framework);
    const auto input = streamOf(goForward());
    input->finish();
    session.start(input);
    ASSERT_TRUE(waitUntil([&] { return session.started.hasEnded; }));
    session.finalize();
    ASSERT_TRUE(waitUntil([&] { return session.finalized.hasEnded; }));
    EXPECT_FALSE(session.finalized.failure);
    EXPECT_EQ(session.text().toStdString(), "Go forward ten meters.");
}

TEST_F(PocketSphinxTest, AnAnalyzerThatWasNeverStartedEndsAtOnce)
{
    Session session(*framework);
    const auto collecting = collect(session.transcriber, session.results);
    session.finalize();
    EXPECT_TRUE(session.finalized.hasEnded);
    EXPECT_TRUE(session.results.hasEnded);
    EXPECT_FALSE(session.finalized.failure);
}

TEST_F(PocketSphinxTest, AnAbandonedAnalyzerMakesRoomForTheNext)
{
    {
        Session abandoned(*framework);
        abandoned.start(streamOf(goSomewhere()));
        ASSERT_TRUE(waitUntil([&] { return abandoned.started.hasEnded; }));
        abandoned.analyzer.reset();
        ASSERT_TRUE(waitUntil([&] { return abandoned.results.hasEnded; }));
    }
    const Transcription transcript = testing::transcribe(*framework, goForward(), Pace::asFastAsPossible);
    EXPECT_EQ(transcript.text.toStdString(), "Go forward ten meters.");
}

TEST_F(PocketSphinxTest, DestroyingTheFrameworkEndsADictationThatIsGoingOn)
{
    Session session(*framework);
    session.start(streamOf(recording(0)));
    ASSERT_TRUE(waitUntil([&] { return session.started.hasEnded; }));
    session.finalize();
    framework.reset();
    ASSERT_TRUE(waitUntil([&] { return session.finalized.hasEnded && session.results.hasEnded; }));
    EXPECT_TRUE(session.finalized.failure);
    EXPECT_TRUE(session.results.failure);
}

TEST_F(PocketSphinxTest, DestroyingTheFrameworkWhileTheModelLoadsMakesStartFail)
{
    Session first(*framework);
    Session second(*framework);
    first.start(streamOf(recording(0)));
    second.start(streamOf(recording(0)));
    framework.reset();
    ASSERT_TRUE(waitUntil([&] { return first.started.hasEnded && second.started.hasEnded; }));
    EXPECT_TRUE(second.started.failure);
    first.finalize();
    second.finalize();
    EXPECT_TRUE(waitUntil([&] { return first.results.hasEnded && second.results.hasEnded; }));
}

TEST_F(PocketSphinxTest, SoundInTheWrongFormatFailsThatDictationOnly)
{
    Session session(*framework);
    auto input = std::make_shared<AudioStream>();
    AudioStream::Node node;
    node.emplace_back(AudioFormat{48000, 1, SampleFormat::float32}, std::vector<float>(480));
    input->yield(std::move(node));
    input->finish();
    session.start(input);
    ASSERT_TRUE(waitUntil([&] { return session.started.hasEnded; }));
    session.finalize();
    ASSERT_TRUE(waitUntil([&] { return session.finalized.hasEnded && session.results.hasEnded; }));
    EXPECT_TRUE(session.finalized.failure);
    EXPECT_TRUE(session.results.failure);
    const Transcription transcript = testing::transcribe(*framework, goForward(), Pace::asFastAsPossible);
    EXPECT_EQ(transcript.text.toStdString(), "Go forward ten meters.");
}

TEST_F(PocketSphinxTest, AModelThatIsThereNeedsNoInstallation)
{
    Outcome asked;
    Outcome installed;
    const auto task = install(*framework, asked, installed);
    ASSERT_TRUE(waitUntil([&] { return asked.hasEnded; }));
    EXPECT_FALSE(asked.failure);
    EXPECT_FALSE(asked.hasRequest);
}

TEST_F(PocketSphinxTest, AMissingModelSaysWhichPackageToInstall)
{
    PocketSphinxFramework without(QStringLiteral("/nonexistent"), queue);
    Outcome asked;
    Outcome installed;
    const auto task = install(without, asked, installed);
    ASSERT_TRUE(waitUntil([&] { return asked.hasEnded; }));
    ASSERT_TRUE(asked.hasRequest);
    ASSERT_TRUE(installed.hasEnded);
    ASSERT_TRUE(installed.failure);
    EXPECT_TRUE(installed.failure->contains(QStringLiteral("pocketsphinx-en-us")));
}

TEST_F(PocketSphinxTest, StartingWithoutAModelFails)
{
    PocketSphinxFramework without(QStringLiteral("/nonexistent"), queue);
    Session session(without);
    session.start(streamOf(goForward()));
    ASSERT_TRUE(waitUntil([&] { return session.started.hasEnded; }));
    ASSERT_TRUE(session.started.failure);
    EXPECT_TRUE(session.started.failure->contains(QStringLiteral("pocketsphinx-en-us")));
    session.finalize();
    EXPECT_TRUE(waitUntil([&] { return session.results.hasEnded; }));
}

} // namespace
} // namespace corvandi
