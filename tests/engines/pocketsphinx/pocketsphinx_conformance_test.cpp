#include "conformance/speech_framework_suite.h"
#include "engines/pocketsphinx/model_files.h"
#include "engines/pocketsphinx/pocketsphinx_framework.h"
#include "engines/shared/utterance_splitter.h"
#include "support/event_loop.h"
#include "support/recording_log.h"
#include "support/transcribing.h"
#include "system/process/qt_main_queue.h"

namespace corvandi::testing {
namespace {

/// A recording and a second without sound, in which the speaker pauses.
AudioBuffer recording(size_t index)
{
    Samples sound = humanRecordings().at(index).load();
    sound.resize(sound.size() + static_cast<size_t>(engineFormat.sampleRate));
    return {engineFormat, std::move(sound)};
}

class PocketSphinxDriver : public SpeechFrameworkDriver {
public:
    SpeechFramework& framework() override { return framework_; }
    SpeechFramework& frameworkWithoutModel() override { return withoutModel_; }
    SpokenWords firstWords() override { return {recording(11), "Go somewhere and do something"}; }
    SpokenWords secondWords() override { return {recording(10), "Go forward ten meters"}; }
    bool until(const std::function<bool()>& condition) override
    {
        return waitUntil(condition, std::chrono::seconds(30));
    }

private:
    QtMainQueue queue_;
    RecordingLog log_;
    PocketSphinxFramework framework_{installedModelFolder(), queue_, log_};
    PocketSphinxFramework withoutModel_{QStringLiteral("/nonexistent"), queue_, log_};
};

INSTANTIATE_TEST_SUITE_P(PocketSphinx, SpeechFrameworkSuite,
                         ::testing::Values(&makeDriver<PocketSphinxDriver>));

} // namespace
} // namespace corvandi::testing
