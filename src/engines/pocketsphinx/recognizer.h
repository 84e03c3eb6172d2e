#pragma once

#include "base/awaitables.h"
#include "base/main_queue.h"
#include "engines/engine_thread.h"
#include "engines/pocketsphinx/dictation_run.h"
#include "engines/pocketsphinx/model_files.h"
#include "engines/pocketsphinx/sphinx_decoder.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <memory>
#include <vector>

namespace corvandi {

/// Spells the recogniser's bare words as sentences: a capital at the start, the word "I", and a full
/// stop where the speaker paused as between sentences and at the end. The pieces that it returns
/// concatenate to the text as they are. One speller spells one dictation.
class SentenceSpeller {
public:
    /// Spells what was said after a pause of the length given. Empty when there are no words.
    [[nodiscard]] QString add(const QString& words, std::chrono::milliseconds pauseBefore);
    /// What ends the text; empty when nothing was said.
    [[nodiscard]] QString finish();

private:
    [[nodiscard]] QString separator(std::chrono::milliseconds pauseBefore) const;

    bool hasText_ = false;
    /// Pauses around noise in which no words were found add up.
    std::chrono::milliseconds pause_{0};
};

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
