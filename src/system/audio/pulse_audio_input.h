#pragma once

#include "base/awaitables.h"
#include "base/worker.h"
#include "ports/audio_input.h"
#include "ports/system_log.h"
#include "system/audio/pulse_server.h"

#include <memory>
#include <optional>

namespace corvandi {

class PulseRecording;

/// The microphone through the sound server: PulseAudio, or PipeWire speaking its protocol.
///
/// The stream is asked for in the tap's format, which should be `inputFormat()`, the device's own, so
/// that nothing is converted; if the default device changed in between, the server converts. Sound that
/// the server lost arrives as silence of the same length.
///
/// A start that has not succeeded after 2 seconds (the server or the device hangs) fails. `stop` makes
/// a start that is still under way fail. A recording ends by itself when the device is unplugged, when
/// the server goes, and when no sound comes for a second; the first may take four.
///
/// Thread: main thread only; the tap block runs on the sound thread.
class PulseAudioInput : public AudioInput {
public:
    /// `server`, `queue` and `log` must outlive the input.
    PulseAudioInput(PulseServer& server, MainQueue& queue, SystemLog& log);
    ~PulseAudioInput() override;
    PulseAudioInput(const PulseAudioInput&) = delete;
    PulseAudioInput& operator=(const PulseAudioInput&) = delete;

    [[nodiscard]] AudioFormat inputFormat() override;
    [[nodiscard]] bool isMuted() override;
    void installTap(uint32_t frames, const AudioFormat& format, TapBlock block) override;
    [[nodiscard]] QCoro::Task<> removeTap() override;
    void prepare() override;
    [[nodiscard]] QCoro::Task<> start(EndHandler ended) override;
    void stop() override;

private:
    struct Tap;
    struct PendingStart {
        OneShot<Done> outcome;
        std::unique_ptr<Timer> limit;
    };

    void record(uint64_t run);
    void recordingStarted(uint64_t run);
    void recordingFailed(uint64_t run, const QString& reason);
    void failStart(const QString& reason);

    PulseServer& server_;
    MainQueue& queue_;
    SystemLog& log_;
    std::unique_ptr<Tap> tap_;
    std::optional<PendingStart> pendingStart_;
    /// Of the run that is under way.
    EndHandler ended_;
    /// Counts starts and stops: reports of an earlier run don't count.
    uint64_t run_ = 0;
    Mailbox mailbox_;
    /// Belongs to the sound thread.
    std::unique_ptr<PulseRecording> recording_;
};

} // namespace corvandi
