#pragma once

#include "ports/file_system.h"
#include "ports/system_log.h"

#include <QString>

#include <memory>
#include <optional>

namespace corvandi {

/// What an engine has got used to: voices, microphones and rooms. One for this machine, as an engine does
/// not know which microphone it hears.
struct Adaptation {
    /// In the engine's own words; empty when it has got used to nothing yet.
    QString engine;
    /// The level of the voice, in dB below full scale.
    std::optional<double> speechLevel;

    friend bool operator==(const Adaptation&, const Adaptation&) = default;
};

/// Keeps an engine's adaptation from one run of the program to the next, in a small file among what may be
/// deleted at any time. It holds no sound and no words.
///
/// What fails is logged, and the engine begins or goes on without; failures to write one after the other are
/// logged once.
///
/// Thread: one at a time, any but the main thread, since the disk may be slow.
class AdaptationFile {
public:
    /// The file lies in `folder`, which is made for the user alone when it is missing. `log` outlives this.
    AdaptationFile(std::shared_ptr<FileSystem> files, SystemLog& log, QString folder);

    /// What was written last. Nothing when there is no file, or one that is broken.
    [[nodiscard]] Adaptation read();
    void write(const Adaptation& adaptation);

private:
    [[nodiscard]] QString path() const;

    std::shared_ptr<FileSystem> files_;
    SystemLog& log_;
    QString folder_;
    bool hasFailedToWrite_ = false;
};

} // namespace corvandi
