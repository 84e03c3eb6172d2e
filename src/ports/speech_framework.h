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

/// Runs one dictation through the engine: sound in, pieces of the transcript out, also while the speaker
/// goes on.
///
/// Dropping it abandons the dictation: the engine is free for the next one, and the results end, which
/// somebody may still be waiting for. Whoever awaits another of its tasks holds it meanwhile.
class SpeechAnalyzer {
public:
    virtual ~SpeechAnalyzer() = default;

    /// Starts to read `input`; ends when the engine runs. Throws when it can't. `input` may come in any
    /// pieces and from any thread, in the format that `bestAvailableAudioFormat` named. Once.
    [[nodiscard]] virtual QCoro::Task<> start(std::shared_ptr<AudioStream> input) = 0;
    /// Waits for the next result; nothing at the end. Throws when the recognition fails on the way.
    /// One caller at a time.
    [[nodiscard]] virtual QCoro::Task<std::optional<SpeechResult>> nextResult() = 0;
    /// Ends when everything up to the end of the finished input has been recognised and the last
    /// result delivered. Throws when that fails. An analyzer that was never started ends at once, and
    /// so do its results. Once.
    [[nodiscard]] virtual QCoro::Task<> finalizeAndFinishThroughEndOfInput() = 0;
    /// Gives the dictation up, as dropping it does, for those who can't drop it because its tasks are
    /// awaited: the results end soon, and so does finalizing, without an error. The sound that has not been
    /// recognised by then never is. May be called at any time, also twice.
    virtual void cancel() = 0;
};

/// A speech engine. Its analyzers take turns: one that is started while another one is still busy is
/// worked on after it, and each has its own results.
///
/// Thread: main thread only, also for its analyzers; nothing blocks it. The engine's own work runs on
/// its own thread.
class SpeechFramework {
public:
    virtual ~SpeechFramework() = default;

    /// The languages, in the engine's order of preference.
    [[nodiscard]] virtual QCoro::Task<std::vector<Locale>> supportedLocales() = 0;
    /// Whether the model for `locale`, a supported one, must be installed first. When not, it has been
    /// brought into memory. Throws when the model is there but can't be used.
    [[nodiscard]] virtual QCoro::Task<bool> needsInstallation(Locale locale) = 0;
    /// Fetches and installs the model for `locale`. Throws when that fails.
    [[nodiscard]] virtual QCoro::Task<> downloadAndInstall(Locale locale) = 0;
    /// The format in which the engine wants its sound, or nothing when it can't say.
    [[nodiscard]] virtual QCoro::Task<std::optional<AudioFormat>> bestAvailableAudioFormat(Locale locale) = 0;
    /// For one dictation in `locale`. There are no options: no timing, no confidence.
    [[nodiscard]] virtual std::shared_ptr<SpeechAnalyzer> makeAnalyzer(const Locale& locale) = 0;
};

} // namespace corvandi
