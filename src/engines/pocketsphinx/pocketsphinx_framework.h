#pragma once

#include "base/main_queue.h"
#include "engines/shared/adaptation_file.h"
#include "ports/speech_framework.h"
#include "ports/system_log.h"

#include <QString>

#include <memory>

namespace corvandi {

class Recognizer;

/// The built-in speech engine: American English, offline, with the model that the distribution
/// packages. It recognises while the speaker goes on: each of his pauses yields a final result, and at
/// the end only the last few words are left to do. There are no results that are not final.
///
/// One decoder, loaded by `needsInstallation` or else by the first analyzer's start, serves all
/// dictations and gets used to voice and microphone. A missing model can't be downloaded, as it comes
/// from the distribution: `downloadAndInstall` throws the sentence that says which package to install.
/// A damaged one makes `needsInstallation` and `start` throw.
///
/// A decoder that fails in the middle of a dictation is replaced, once in a dictation, and the utterance is
/// recognised again; that is logged.
///
/// Destroying the framework ends everything that is going on within some milliseconds; results and
/// `finalizeAndFinishThroughEndOfInput` that are awaited then throw.
class PocketSphinxFramework : public SpeechFramework {
public:
    /// `queue` and `log` must outlive the framework. What the decoder has got used to is kept in
    /// `adaptation`; where that is null, for the life of the framework.
    PocketSphinxFramework(const QString& modelFolder, MainQueue& queue, SystemLog& log,
                          std::shared_ptr<AdaptationFile> adaptation = nullptr);
    ~PocketSphinxFramework() override;
    PocketSphinxFramework(const PocketSphinxFramework&) = delete;
    PocketSphinxFramework& operator=(const PocketSphinxFramework&) = delete;

    [[nodiscard]] QCoro::Task<std::vector<Locale>> supportedLocales() override;
    [[nodiscard]] QCoro::Task<bool> needsInstallation(Locale locale) override;
    [[nodiscard]] QCoro::Task<> downloadAndInstall(Locale locale) override;
    [[nodiscard]] QCoro::Task<std::optional<AudioFormat>> bestAvailableAudioFormat(Locale locale) override;
    [[nodiscard]] std::shared_ptr<SpeechAnalyzer> makeAnalyzer(const Locale& locale) override;

private:
    /// The one owner: analyzers look at it through weak pointers.
    std::shared_ptr<Recognizer> engine_;
};

} // namespace corvandi
