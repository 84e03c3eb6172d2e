#pragma once

#include "base/main_queue.h"
#include "ports/speech_framework.h"

#include <QString>

#include <memory>

namespace corvandi {

class Recognizer;

/// The built-in speech engine: American English, offline, with the model that the distribution
/// packages. It recognises while the speaker goes on: each of his pauses yields a final result, and at
/// the end only the last few words are left to do. There are no results that are not final.
///
/// One decoder, loaded by `assetInstallationRequest` or else by the first analyzer's start, serves all
/// dictations and gets used to voice and microphone. An analyzer that is started while another one is
/// still busy gets its turn after it. A missing model can't be downloaded: the request's
/// `downloadAndInstall` throws the sentence that says which package to install. A damaged one makes
/// `assetInstallationRequest` and `start` throw.
///
/// Destroying the framework ends everything that is going on within some milliseconds; results and
/// `finalizeAndFinishThroughEndOfInput` that are awaited then throw. Destroying an analyzer abandons
/// its dictation.
class PocketSphinxFramework : public SpeechFramework {
public:
    /// `queue` must outlive the framework.
    PocketSphinxFramework(const QString& modelFolder, MainQueue& queue);
    ~PocketSphinxFramework() override;
    PocketSphinxFramework(const PocketSphinxFramework&) = delete;
    PocketSphinxFramework& operator=(const PocketSphinxFramework&) = delete;

    [[nodiscard]] QCoro::Task<std::vector<Locale>> supportedLocales() override;
    [[nodiscard]] std::shared_ptr<SpeechTranscriber> makeTranscriber(const Locale& locale) override;
    /// `transcriber` must be one of this framework's, else there is no analyzer (null).
    [[nodiscard]] std::shared_ptr<SpeechAnalyzer>
    makeAnalyzer(std::shared_ptr<SpeechTranscriber> transcriber) override;
    [[nodiscard]] QCoro::Task<std::unique_ptr<AssetInstallationRequest>>
    assetInstallationRequest(std::shared_ptr<SpeechTranscriber> transcriber) override;
    [[nodiscard]] QCoro::Task<std::optional<AudioFormat>>
    bestAvailableAudioFormat(std::shared_ptr<SpeechTranscriber> transcriber) override;

private:
    /// The one owner: analyzers look at it through weak pointers.
    std::shared_ptr<Recognizer> engine_;
};

} // namespace corvandi
