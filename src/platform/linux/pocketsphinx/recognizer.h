#pragma once

#include "base/main_queue.h"
#include "base/one_shot.h"
#include "platform/linux/pocketsphinx/decoder_thread.h"
#include "platform/linux/pocketsphinx/dictation_run.h"
#include "platform/linux/pocketsphinx/model_files.h"
#include "platform/linux/pocketsphinx/sphinx_decoder.h"

#include <QString>

#include <atomic>
#include <memory>
#include <vector>

namespace corvandi {

enum class ModelPresence { loaded, notInstalled };

/// The engine's thread with its one decoder, which recognises dictations one after the other.
///
/// Thread: main thread only. Destroying it cancels all dictations and waits for the thread, which takes
/// some milliseconds.
class Recognizer {
public:
    Recognizer(const QString& modelFolder, MainQueue& queue);
    ~Recognizer();
    Recognizer(const Recognizer&) = delete;
    Recognizer& operator=(const Recognizer&) = delete;

    /// Brings the model into memory if it is not there yet. Fails with `Error` when it can't be used.
    [[nodiscard]] OneShot<ModelPresence> load();
    /// Recognises `dictation` after those that were handed over before.
    void recognise(const std::shared_ptr<Dictation>& dictation);

private:
    ModelPresence loadDecoder();
    void recogniseNow(Dictation& dictation);

    ModelFiles files_;
    MainQueue& queue_;
    std::vector<OneShot<ModelPresence>> loads_;
    std::vector<std::weak_ptr<Dictation>> dictations_;
    std::atomic<bool> isLoaded_ = false;
    /// Belongs to the thread. Declared before it, so that it outlives it.
    std::unique_ptr<SphinxDecoder> decoder_;
    DecoderThread thread_;
};

} // namespace corvandi
