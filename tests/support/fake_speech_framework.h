#pragma once

#include "ports/speech_framework.h"
#include "support/scripted_step.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace corvandi::testing {

/// A speech engine that recognises what the test says. Each step of it can be told to fail or to stay
/// pending. Nothing runs on a thread of its own: an analyzer reads its stream when it is finalized.
class FakeSpeechFramework : public SpeechFramework {
public:
    FakeSpeechFramework();
    ~FakeSpeechFramework() override;

    std::vector<Locale> locales{Locale(QStringLiteral("en-US"))};
    /// What the engine wants its sound in; nothing when it can't say.
    std::optional<AudioFormat> format = AudioFormat{16000, 1, SampleFormat::float32};
    /// When not, there is an installation request, whose success installs it.
    bool modelIsInstalled = true;
    /// Whether finalizing ends the results, as an engine does once it has recognised everything.
    bool finalizingEndsResults = true;

    ScriptedStep listing;     ///< supportedLocales
    ScriptedStep inventory;   ///< assetInstallationRequest
    ScriptedStep downloading; ///< downloadAndInstall
    ScriptedStep formatQuery; ///< bestAvailableAudioFormat
    ScriptedStep starting;    ///< an analyzer's start
    ScriptedStep finalizing;  ///< an analyzer's finalizeAndFinishThroughEndOfInput

    /// The results of the latest dictation. All four need a dictation.
    void pushFinal(const QString& text);
    void pushVolatile(const QString& text);
    void endResults();
    void failResults(const QString& description);
    /// Ends the results of every dictation that there was, so that no task is left waiting for one.
    void endAllResults();

    /// One analyzer, in the order in which they were made.
    struct Dictation {
        Locale locale;
        bool wasStarted = false;
        bool wasFinalized = false;
        /// What came out of its stream, read to the end when it was finalized.
        std::vector<AudioBuffer> received;
    };
    [[nodiscard]] const std::vector<std::shared_ptr<Dictation>>& dictations() const { return dictations_; }
    /// The latest one; there must be one.
    [[nodiscard]] const Dictation& latest() const { return *dictations_.back(); }
    /// The language of each transcriber that was made, also for an installation.
    [[nodiscard]] const std::vector<Locale>& transcriberLocales() const { return transcriberLocales_; }

    QCoro::Task<std::vector<Locale>> supportedLocales() override;
    std::shared_ptr<SpeechTranscriber> makeTranscriber(const Locale& locale) override;
    std::shared_ptr<SpeechAnalyzer> makeAnalyzer(std::shared_ptr<SpeechTranscriber> transcriber) override;
    QCoro::Task<std::unique_ptr<AssetInstallationRequest>>
    assetInstallationRequest(std::shared_ptr<SpeechTranscriber> transcriber) override;
    QCoro::Task<std::optional<AudioFormat>>
    bestAvailableAudioFormat(std::shared_ptr<SpeechTranscriber> transcriber) override;

private:
    class Transcriber;
    class Analyzer;
    class Request;

    std::shared_ptr<Transcriber> latestTranscriber_;
    std::vector<std::weak_ptr<Transcriber>> transcribers_;
    std::vector<std::shared_ptr<Dictation>> dictations_;
    std::vector<Locale> transcriberLocales_;
};

} // namespace corvandi::testing
