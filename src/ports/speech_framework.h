#pragma once

#include "base/locale.h"
#include "ports/audio_buffer.h"

#include <QCoroTask>

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace corvandi {

/// A piece of the transcript. Final texts concatenate to the transcript as they are: an engine puts
/// the space between two of them into the second one. Texts that are not final may still change.
struct SpeechResult {
    QString text;
    bool isFinal;
};

/// What is to be transcribed, in which language: the recipe from which an analyzer works. It has no
/// options: only final results, no timing, no confidence.
class SpeechTranscriber {
public:
    virtual ~SpeechTranscriber() = default;

    /// Waits for the next result; nothing at the end. Throws when the recognition fails on the way.
    /// One caller at a time.
    [[nodiscard]] virtual QCoro::Task<std::optional<SpeechResult>> nextResult() = 0;
};

/// Runs one dictation through the engine.
class SpeechAnalyzer {
public:
    virtual ~SpeechAnalyzer() = default;

    /// Starts to read `input`; ends when the engine runs. Throws when it can't. `input` may come in any
    /// pieces, in the format that `bestAvailableAudioFormat` named.
    [[nodiscard]] virtual QCoro::Task<> start(std::shared_ptr<AudioStream> input) = 0;
    /// Ends when everything up to the end of the finished input has been recognised and the last
    /// result delivered to the transcriber. Throws when that fails. An analyzer that was never started
    /// ends at once, and so do its transcriber's results.
    [[nodiscard]] virtual QCoro::Task<> finalizeAndFinishThroughEndOfInput() = 0;
};

/// The outstanding installation of a speech model.
class AssetInstallationRequest {
public:
    virtual ~AssetInstallationRequest() = default;

    /// Fetches and installs the model. Throws when that fails.
    [[nodiscard]] virtual QCoro::Task<> downloadAndInstall() = 0;
};

/// A speech engine.
///
/// Thread: main thread only; nothing blocks it. The engine's own work runs on its own thread.
class SpeechFramework {
public:
    virtual ~SpeechFramework() = default;

    /// The languages, in the engine's order of preference.
    [[nodiscard]] virtual QCoro::Task<std::vector<Locale>> supportedLocales() = 0;
    [[nodiscard]] virtual std::shared_ptr<SpeechTranscriber> makeTranscriber(const Locale& locale) = 0;
    [[nodiscard]] virtual std::shared_ptr<SpeechAnalyzer>
    makeAnalyzer(std::shared_ptr<SpeechTranscriber> transcriber) = 0;
    /// What must still be installed for `transcriber`: nothing when its model is there and has been
    /// brought into memory. Throws when the model is there but can't be used.
    [[nodiscard]] virtual QCoro::Task<std::unique_ptr<AssetInstallationRequest>>
    assetInstallationRequest(std::shared_ptr<SpeechTranscriber> transcriber) = 0;
    /// The format in which the engine wants its sound, or nothing when it can't say.
    [[nodiscard]] virtual QCoro::Task<std::optional<AudioFormat>>
    bestAvailableAudioFormat(std::shared_ptr<SpeechTranscriber> transcriber) = 0;
};

} // namespace corvandi
