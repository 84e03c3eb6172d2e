#pragma once

#include "ports/speech_framework.h"
#include "support/task_outcome.h"

#include <gtest/gtest.h>

#include <exception>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace corvandi::testing {

// What the port's header promises, asserted of every engine and of the fake that the logic is tested with.
// This header defines tests: it is included in one source file of an executable, which instantiates them:
// INSTANTIATE_TEST_SUITE_P(Fake, SpeechFrameworkSuite, ::testing::Values(&makeDriver<FakeDriver>));

/// Sound in the engine's format, with a pause at its end, and the words that the engine hears in it.
struct SpokenWords {
    AudioBuffer sound;
    std::string words;
};

/// An engine and what the suite needs around it.
class SpeechFrameworkDriver {
public:
    virtual ~SpeechFrameworkDriver() = default;

    /// With its model installed.
    [[nodiscard]] virtual SpeechFramework& framework() = 0;
    /// Without its model.
    [[nodiscard]] virtual SpeechFramework& frameworkWithoutModel() = 0;
    [[nodiscard]] virtual SpokenWords firstWords() = 0;
    [[nodiscard]] virtual SpokenWords secondWords() = 0;
    /// Lets time pass until `condition` holds; false when it does not within some seconds.
    [[nodiscard]] virtual bool until(const std::function<bool()>& condition) = 0;
};

template<class Driver>
std::unique_ptr<SpeechFrameworkDriver> makeDriver()
{
    return std::make_unique<Driver>();
}

/// One dictation, whose results are collected from the beginning.
class WatchedDictation {
public:
    explicit WatchedDictation(std::shared_ptr<SpeechAnalyzer> theAnalyzer)
        : analyzer(std::move(theAnalyzer))
    {
        const QCoro::Task<> collecting = collect(analyzer, results);
    }

    struct Results {
        std::vector<SpeechResult> pieces;
        std::set<std::thread::id> threads;
        bool haveEnded = false;
        std::string failure;
    };

    void write(AudioBuffer sound) const
    {
        AudioStream::Node node;
        node.push_back(std::move(sound));
        input->yield(std::move(node));
    }
    [[nodiscard]] std::string text() const
    {
        QString text;
        for (const SpeechResult& piece : results->pieces)
            text += piece.text;
        return text.toStdString();
    }

    std::shared_ptr<SpeechAnalyzer> analyzer;
    const std::shared_ptr<AudioStream> input = std::make_shared<AudioStream>();
    const std::shared_ptr<Results> results = std::make_shared<Results>();

private:
    // Without holding the analyzer while it waits: a test may drop it.
    static QCoro::Task<> collect(std::weak_ptr<SpeechAnalyzer> analyzer, std::shared_ptr<Results> results)
    {
        try {
            while (std::shared_ptr<SpeechAnalyzer> living = analyzer.lock()) {
                QCoro::Task<std::optional<SpeechResult>> next = living->nextResult();
                living.reset();
                std::optional<SpeechResult> result = co_await next;
                results->threads.insert(std::this_thread::get_id());
                if (!result)
                    break;
                results->pieces.push_back(std::move(*result));
            }
        } catch (const std::exception& error) {
            results->failure = describe(error).toStdString();
        }
        results->haveEnded = true;
    }
};

class SpeechFrameworkSuite : public ::testing::TestWithParam<std::unique_ptr<SpeechFrameworkDriver> (*)()> {
private:
    std::unique_ptr<SpeechFrameworkDriver> driver_ = GetParam()();

protected:
    template<class T = void>
    [[nodiscard]] TaskOutcome<T> ended(QCoro::Task<T> task)
    {
        TaskOutcome<T> outcome(std::move(task));
        EXPECT_TRUE(driver.until([&] { return outcome.hasEnded(); }));
        return outcome;
    }
    [[nodiscard]] Locale locale() { return ended(driver.framework().supportedLocales()).value().front(); }
    [[nodiscard]] WatchedDictation makeDictation()
    {
        return WatchedDictation(driver.framework().makeAnalyzer(locale()));
    }
    void start(const WatchedDictation& dictation)
    {
        EXPECT_TRUE(ended(dictation.analyzer->start(dictation.input)).hasSucceeded());
    }
    void finalize(const WatchedDictation& dictation)
    {
        dictation.input->finish();
        EXPECT_TRUE(ended(dictation.analyzer->finalizeAndFinishThroughEndOfInput()).hasSucceeded());
        EXPECT_TRUE(driver.until([&] { return dictation.results->haveEnded; }));
        EXPECT_EQ(dictation.results->failure, "");
    }
    /// A whole dictation of `spoken`.
    void expectToBeUnderstood(const SpokenWords& spoken)
    {
        const WatchedDictation dictation = makeDictation();
        start(dictation);
        dictation.write(spoken.sound);
        finalize(dictation);
        EXPECT_NE(dictation.text().find(spoken.words), std::string::npos) << dictation.text();
    }

    SpeechFrameworkDriver& driver = *driver_;
};

TEST_P(SpeechFrameworkSuite, NamesTheLanguagesEachOnceAndEveryTimeInTheSameOrder)
{
    const std::vector<Locale> locales = ended(driver.framework().supportedLocales()).value();
    ASSERT_FALSE(locales.empty());
    std::set<std::string> identifiers;
    for (const Locale& each : locales)
        EXPECT_TRUE(identifiers.insert(each.bcp47().toStdString()).second) << each.bcp47().toStdString();
    EXPECT_EQ(ended(driver.framework().supportedLocales()).value(), locales);
}

TEST_P(SpeechFrameworkSuite, AModelThatIsThereNeedsNoInstallation)
{
    const auto asked = ended(driver.framework().needsInstallation(locale()));
    ASSERT_TRUE(asked.hasSucceeded());
    EXPECT_FALSE(asked.value());
}

TEST_P(SpeechFrameworkSuite, AMissingModelIsInstalledOrTheReasonWhyNotIsTold)
{
    SpeechFramework& framework = driver.frameworkWithoutModel();
    const auto before = ended(framework.needsInstallation(locale()));
    ASSERT_TRUE(before.hasSucceeded());
    EXPECT_TRUE(before.value());
    const auto installed = ended(framework.downloadAndInstall(locale()));
    const auto after = ended(framework.needsInstallation(locale()));
    ASSERT_TRUE(after.hasSucceeded());
    EXPECT_EQ(after.value(), installed.hasFailed());
    EXPECT_EQ(installed.failure().isEmpty(), installed.hasSucceeded());
}

TEST_P(SpeechFrameworkSuite, TheFormatIsOneOfSoundAndThatOfEveryDictation)
{
    const auto format = ended(driver.framework().bestAvailableAudioFormat(locale())).value();
    ASSERT_TRUE(format);
    EXPECT_GT(format->sampleRate, 0);
    EXPECT_GT(format->channelCount, 0U);
    EXPECT_EQ(ended(driver.framework().bestAvailableAudioFormat(locale())).value(), format);
}

TEST_P(SpeechFrameworkSuite, ADictationWithoutSoundHasNoTextAndDoesNotFail)
{
    const WatchedDictation dictation = makeDictation();
    start(dictation);
    finalize(dictation);
    EXPECT_EQ(dictation.text(), "");
}

TEST_P(SpeechFrameworkSuite, WhatIsSaidArrivesInFinalPiecesAndInOrder)
{
    const SpokenWords first = driver.firstWords();
    const SpokenWords second = driver.secondWords();
    const WatchedDictation dictation = makeDictation();
    start(dictation);
    dictation.write(first.sound);
    dictation.write(second.sound);
    finalize(dictation);
    for (const SpeechResult& piece : dictation.results->pieces)
        EXPECT_TRUE(piece.isFinal) << piece.text.toStdString();
    const size_t at = dictation.text().find(first.words);
    ASSERT_NE(at, std::string::npos) << dictation.text();
    EXPECT_NE(dictation.text().find(second.words, at + first.words.size()), std::string::npos)
        << dictation.text();
}

TEST_P(SpeechFrameworkSuite, SoundFromBeforeTheStartCountsToo)
{
    const SpokenWords spoken = driver.firstWords();
    const WatchedDictation dictation = makeDictation();
    dictation.write(spoken.sound);
    dictation.input->finish();
    start(dictation);
    finalize(dictation);
    EXPECT_NE(dictation.text().find(spoken.words), std::string::npos) << dictation.text();
}

TEST_P(SpeechFrameworkSuite, TheLastResultAndTheEndComeBeforeFinalizingEnds)
{
    const SpokenWords spoken = driver.firstWords();
    const WatchedDictation dictation = makeDictation();
    start(dictation);
    dictation.write(spoken.sound);
    dictation.input->finish();
    const auto finalized = ended(dictation.analyzer->finalizeAndFinishThroughEndOfInput());
    EXPECT_TRUE(finalized.hasSucceeded());
    EXPECT_TRUE(dictation.results->haveEnded);
    EXPECT_NE(dictation.text().find(spoken.words), std::string::npos) << dictation.text();
}

TEST_P(SpeechFrameworkSuite, AnAnalyzerThatWasNeverStartedEndsAtOnceAndSoDoItsResults)
{
    const WatchedDictation dictation = makeDictation();
    const TaskOutcome<> finalized(dictation.analyzer->finalizeAndFinishThroughEndOfInput());
    EXPECT_TRUE(finalized.hasSucceeded());
    EXPECT_TRUE(dictation.results->haveEnded);
    EXPECT_TRUE(dictation.results->pieces.empty());
    EXPECT_EQ(dictation.results->failure, "");
}

TEST_P(SpeechFrameworkSuite, DictationsOneAfterTheOtherAreAllUnderstood)
{
    expectToBeUnderstood(driver.firstWords());
    expectToBeUnderstood(driver.secondWords());
    expectToBeUnderstood(driver.firstWords());
}

TEST_P(SpeechFrameworkSuite, ADictationThatStartsWhileAnotherIsNotDoneGetsItsTurnAndItsOwnResults)
{
    const SpokenWords first = driver.firstWords();
    const SpokenWords second = driver.secondWords();
    const WatchedDictation earlier = makeDictation();
    start(earlier);
    earlier.write(first.sound);
    const WatchedDictation later = makeDictation();
    start(later);
    later.write(second.sound);
    finalize(earlier);
    finalize(later);
    EXPECT_NE(earlier.text().find(first.words), std::string::npos) << earlier.text();
    EXPECT_EQ(earlier.text().find(second.words), std::string::npos) << earlier.text();
    EXPECT_NE(later.text().find(second.words), std::string::npos) << later.text();
    EXPECT_EQ(later.text().find(first.words), std::string::npos) << later.text();
}

TEST_P(SpeechFrameworkSuite, DroppingAnAnalyzerEndsItsResultsAndMakesRoomForTheNext)
{
    WatchedDictation dictation = makeDictation();
    start(dictation);
    dictation.write(driver.firstWords().sound);
    dictation.analyzer.reset();
    EXPECT_TRUE(driver.until([&] { return dictation.results->haveEnded; }));
    EXPECT_EQ(dictation.results->failure, "");
    expectToBeUnderstood(driver.secondWords());
}

TEST_P(SpeechFrameworkSuite, DroppingAnAnalyzerThatWasNeverStartedEndsItsResults)
{
    WatchedDictation dictation = makeDictation();
    dictation.analyzer.reset();
    EXPECT_TRUE(driver.until([&] { return dictation.results->haveEnded; }));
    EXPECT_TRUE(dictation.results->pieces.empty());
    EXPECT_EQ(dictation.results->failure, "");
}

TEST_P(SpeechFrameworkSuite, ACancelledDictationEndsThoughItIsAwaitedAndMakesRoomForTheNext)
{
    const WatchedDictation dictation = makeDictation();
    start(dictation);
    dictation.write(driver.firstWords().sound);
    dictation.input->finish();
    TaskOutcome<> finalized(dictation.analyzer->finalizeAndFinishThroughEndOfInput());
    dictation.analyzer->cancel();
    dictation.analyzer->cancel();
    EXPECT_TRUE(driver.until([&] { return finalized.hasEnded() && dictation.results->haveEnded; }));
    EXPECT_TRUE(finalized.hasSucceeded());
    EXPECT_EQ(dictation.results->failure, "");
    expectToBeUnderstood(driver.secondWords());
}

TEST_P(SpeechFrameworkSuite, ADictationThatIsCancelledBeforeItsStartEndsToo)
{
    const WatchedDictation dictation = makeDictation();
    dictation.analyzer->cancel();
    EXPECT_TRUE(driver.until([&] { return dictation.results->haveEnded; }));
    EXPECT_TRUE(dictation.results->pieces.empty());
    EXPECT_TRUE(ended(dictation.analyzer->finalizeAndFinishThroughEndOfInput()).hasSucceeded());
}

TEST_P(SpeechFrameworkSuite, SoundMayComeFromAnotherThreadAndResultsComeOnTheMainThread)
{
    const SpokenWords spoken = driver.firstWords();
    const WatchedDictation dictation = makeDictation();
    start(dictation);
    std::thread([&] {
        dictation.write(spoken.sound);
        dictation.input->finish();
    }).join();
    finalize(dictation);
    EXPECT_NE(dictation.text().find(spoken.words), std::string::npos) << dictation.text();
    EXPECT_EQ(dictation.results->threads, std::set<std::thread::id>{std::this_thread::get_id()});
}

} // namespace corvandi::testing
