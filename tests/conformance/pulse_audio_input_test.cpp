#include "conformance/audio_input_suite.h"
#include "conformance/event_loop_time.h"
#include "support/recording_log.h"
#include "system/audio/pulse_audio_input.h"
#include "system/audio/sound_desktop.h"
#include "system/process/qt_main_queue.h"

#include <optional>

namespace corvandi::testing {
namespace {

class PulseAudioInputDriver : public OnEventLoop<AudioInputDriver> {
public:
    [[nodiscard]] AudioInput& input() override { return input_; }
    /// The virtual microphone delivers all the time.
    void speak() override {}
    void unplug() override { unplugged_.emplace(); }
    void plugIn() override { unplugged_.reset(); }
    void mute() override { muted_.emplace(); }
    void unmute() override { muted_.reset(); }

private:
    QtMainQueue queue_;
    RecordingLog log_;
    PulseServer server_{queue_, log_};
    PulseAudioInput input_{server_, queue_, log_};
    // It is plugged in before it is unmuted.
    std::optional<MutedMicrophone> muted_;
    std::optional<UnpluggedMicrophone> unplugged_;
};

INSTANTIATE_TEST_SUITE_P(Pulse, AudioInputSuite, over<PulseAudioInputDriver>("Pulse"));

} // namespace
} // namespace corvandi::testing
