// speech_conditions [first]: prints how many words of the human recordings the built-in engine gets wrong
// when the microphone is turned down or up, and in noise. With "first", each recording is the first
// dictation of an engine that has learned nothing yet; else each engine hears all recordings before the
// ones that count. Takes some minutes.
//
//   build/release/bench/speech_conditions

#include "base/error.h"
#include "engines/pocketsphinx/model_files.h"
#include "engines/pocketsphinx/pocketsphinx_framework.h"
#include "harness/word_errors.h"
#include "support/sound_conditions.h"
#include "system/log/linux_system_log.h"
#include "system/process/qt_main_queue.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstring>
#include <functional>

namespace corvandi::bench {
namespace {

using testing::Noise;
using testing::Samples;

/// The sound of the recording of an index.
using Condition = std::function<Samples(size_t index)>;

struct Errors {
    size_t wrong = 0;
    size_t words = 0;
};

class Measurement {
public:
    explicit Measurement(bool isFirst)
        : isFirst_(isFirst)
    {
    }

    /// Percent.
    double wordErrors(const Condition& condition)
    {
        if (!isFirst_)
            dictateAll(condition);
        const Errors errors = dictateAll(condition);
        return 100.0 * static_cast<double>(errors.wrong) / static_cast<double>(errors.words);
    }

private:
    Errors dictateAll(const Condition& condition)
    {
        Errors errors;
        const auto& recordings = testing::humanRecordings();
        for (size_t index = 0; index < recordings.size(); ++index) {
            if (isFirst_ || !framework_)
                framework_ = std::make_unique<PocketSphinxFramework>(installedModelFolder(), queue_, log_);
            const auto transcript =
                testing::transcribe(*framework_, condition(index), testing::Pace::asFastAsPossible);
            const std::string reference = recordings[index].reference.toStdString();
            errors.wrong += harness::wordErrors(reference, transcript.text.toStdString());
            errors.words += harness::wordsOf(reference).size();
        }
        return errors;
    }

    bool isFirst_;
    QtMainQueue queue_;
    LinuxSystemLog log_;
    std::unique_ptr<PocketSphinxFramework> framework_;
};

void printLevels(bool isFirst)
{
    std::printf("level of the speech (dBFS)   words wrong (%%)\n");
    for (const double level : {-15, -20, -26, -35, -45, -50, -55, -60}) {
        const double errors = Measurement(isFirst).wordErrors([level](size_t index) {
            return testing::atLevel(testing::humanRecordings()[index].load(), level);
        });
        std::printf("%26.0f   %15.1f\n", level, errors);
        std::fflush(stdout);
    }
}

void printNoises(bool isFirst)
{
    constexpr double usualLevel = -26;
    std::printf(
        "\nspeech above the noise (dB)   white    pink  babble   words wrong (%%), speech at %.0f dBFS\n",
        usualLevel);
    for (const double distance : {20, 15, 10}) {
        std::printf("%27.0f", distance);
        for (const Noise kind : {Noise::white, Noise::pink, Noise::babble}) {
            std::printf("%8.1f", Measurement(isFirst).wordErrors([kind, distance](size_t index) {
                return testing::recordingInNoise(index, usualLevel, kind, distance);
            }));
            std::fflush(stdout);
        }
        std::printf("\n");
    }
}

} // namespace
} // namespace corvandi::bench

int main(int count, char** arguments)
{
    const QCoreApplication application(count, arguments);
    try {
        const bool isFirst = count == 2 && std::strcmp(arguments[1], "first") == 0;
        corvandi::bench::printLevels(isFirst);
        corvandi::bench::printNoises(isFirst);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", qPrintable(corvandi::describe(error)));
        return 1;
    }
    return 0;
}
