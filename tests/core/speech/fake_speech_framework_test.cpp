#include "conformance/speech_framework_suite.h"
#include "core/speech/sounds.h"
#include "support/fake_speech_framework.h"

namespace corvandi::testing {
namespace {

/// The words of a buffer are told by its mark.
class FakeSpeechFrameworkDriver : public SpeechFrameworkDriver {
public:
    FakeSpeechFrameworkDriver()
    {
        framework_.recognise = [](const AudioBuffer& sound) {
            return sound.floatSamples().front() == 1 ? QStringLiteral("one") : QStringLiteral(" two");
        };
        withoutModel_.modelIsInstalled = false;
    }

    SpeechFramework& framework() override { return framework_; }
    SpeechFramework& frameworkWithoutModel() override { return withoutModel_; }
    SpokenWords firstWords() override { return {tagged(1, 160, engineFormat.sampleRate), "one"}; }
    SpokenWords secondWords() override { return {tagged(2, 160, engineFormat.sampleRate), "two"}; }
    bool until(const std::function<bool()>& condition) override { return condition(); }

private:
    FakeSpeechFramework framework_;
    FakeSpeechFramework withoutModel_;
};

INSTANTIATE_TEST_SUITE_P(Fake, SpeechFrameworkSuite,
                         ::testing::Values(&makeDriver<FakeSpeechFrameworkDriver>));

} // namespace
} // namespace corvandi::testing
