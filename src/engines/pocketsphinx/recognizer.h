#pragma once

#include "base/awaitables.h"
#include "base/worker.h"
#include "engines/shared/adaptation_file.h"
#include "engines/shared/recognition_run.h"
#include "engines/shared/result_channel.h"
#include "ports/system_log.h"

#include <QString>

#include <memory>
#include <vector>

namespace corvandi {

enum class ModelPresence { loaded, notInstalled };

/// The one decoder and its thread, on which runs are recognised one after the other. What it gets used to
/// outlives the decoder, and with an adaptation file the program, too.
///
/// Thread: main thread only. Destroying it cancels the run that is going on and waits for the thread,
/// which takes some milliseconds. Then everything that was awaited fails with `Error`, later.
class Recognizer {
public:
    /// `queue` and `log` must outlive the recognizer; `file` may be null.
    Recognizer(const QString& modelFolder, MainQueue& queue, SystemLog& log,
               std::shared_ptr<AdaptationFile> file);
    ~Recognizer();
    Recognizer(const Recognizer&) = delete;
    Recognizer& operator=(const Recognizer&) = delete;

    /// Brings the model into memory if it is not there yet. Fails with `Error` when it can't be used.
    [[nodiscard]] OneShot<ModelPresence> load();
    /// Recognises `run` after those that were handed over before, and puts into `results` what comes of
    /// it and its end.
    void recognise(std::shared_ptr<RecognitionRun> run, const std::shared_ptr<ResultChannel>& results);

private:
    struct Decoding;

    MainQueue& queue_;
    std::shared_ptr<Decoding> decoding_;
    /// Of everything that was asked for, for those that wait when the recognizer goes.
    std::vector<OneShot<ModelPresence>> loads_;
    std::vector<std::weak_ptr<ResultChannel>> results_;
    Mailbox mailbox_;
    Worker worker_{QStringLiteral("speech decoder"), Worker::AtEnd::stop};
};

} // namespace corvandi
