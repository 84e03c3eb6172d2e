#include "conformance/audio_input_suite.h"
#include "conformance/virtual_time.h"
#include "support/fake_audio_input.h"

namespace corvandi::testing {
namespace {

class FakeAudioInputDriver : public OnVirtualTime<AudioInputDriver> {
public:
    [[nodiscard]] AudioInput& input() override { return input_; }
    void speak() override { input_.deliver({input_.format, std::vector<float>(2048, 0.5F)}); }
    void unplug() override
    {
        input_.format = {};
        if (input_.isRunning())
            input_.end(QStringLiteral("unplugged"));
    }
    void plugIn() override { input_.format = AudioFormat{48000, 1, SampleFormat::float32}; }
    void mute() override { input_.isDeviceMuted = true; }
    void unmute() override { input_.isDeviceMuted = false; }

private:
    FakeAudioInput input_;
};

INSTANTIATE_TEST_SUITE_P(Fake, AudioInputSuite, over<FakeAudioInputDriver>("Fake"));

} // namespace
} // namespace corvandi::testing
