#pragma once

#include "ports/speech_framework.h"
#include "support/scripted_step.h"

#include <QString>

#include <functional>
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
    /// When not, it needs an installation, whose success installs it.
    bool modelIsInstalled = true;
    /// Whether finalizing ends the results, as an engine does once it has recognised everything.
    bool finalizingEndsResults = true;
    /// What is recognised in each buffer that an analyzer reads, if anything.
    std::function<QString(const AudioBuffer&)> recognise;

    ScriptedStep listing;     ///< supportedLocales
    ScriptedStep inventory;   ///< needsInstallation
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
        bool wasCancelled = false;
        /// What came out of its stream, read to the end when it was finalized.
        std::vector<AudioBuffer> received;
    };
    [[nodiscard]] const std::vector<std::shared_ptr<Dictation>>& dictations() const { return dictations_; }
    /// The latest one; there must be one.
    [[nodiscard]] const Dictation& latest() const { return *dictations_.back(); }
    /// The language of each analyzer that was made, of each model that was asked for, and of each that
    /// was installed.
    [[nodiscard]] const std::vector<Locale>& usedLocales() const { return usedLocales_; }

    QCoro::Task<std::vector<Locale>> supportedLocales() override;
    QCoro::Task<bool> needsInstallation(Locale locale) override;
    QCoro::Task<> downloadAndInstall(Locale locale) override;
    QCoro::Task<std::optional<AudioFormat>> bestAvailableAudioFormat(Locale locale) override;
    std::shared_ptr<SpeechAnalyzer> makeAnalyzer(const Locale& locale) override;

private:
    class Results;
    class Analyzer;

    std::vector<std::shared_ptr<Dictation>> dictations_;
    /// Of each dictation.
    std::vector<std::shared_ptr<Results>> results_;
    std::vector<Locale> usedLocales_;
};

} // namespace corvandi::testing
