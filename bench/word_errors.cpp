// Prints for each human recording what the built-in speech engine makes of it, how many of its words are
// wrong, and how long after the end of the sound the text was complete.

#include "harness/word_errors.h"
#include "base/error.h"
#include "engines/pocketsphinx/model_files.h"
#include "engines/pocketsphinx/pocketsphinx_framework.h"
#include "support/transcribing.h"
#include "system/audio/speex_audio_converter.h"
#include "system/log/linux_system_log.h"
#include "system/process/qt_main_queue.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include <algorithm>

namespace corvandi::bench {
namespace {

using testing::Pace;
using testing::Samples;

constexpr AudioFormat engine{16000, 1, SampleFormat::int16};
constexpr uint32_t framesPerBlock = 2048;
constexpr auto gap = std::chrono::milliseconds(800);

AudioBuffer converted(AudioConverter& converter, const AudioBuffer& buffer, const AudioFormat& to)
{
    const double ratio = to.sampleRate / buffer.format().sampleRate;
    const auto capacity = static_cast<uint32_t>(ratio * buffer.frameLength()) + 1024;
    return converter.convert(buffer, capacity).output;
}

/// What is left of `sound` after a microphone of `format` has recorded it and the program has converted
/// it back, block by block.
Samples throughMicrophone(const Samples& sound, const AudioFormat& format)
{
    SpeexAudioConverterFactory converters;
    const auto toMicrophone = converters.create(engine, format);
    const auto fromMicrophone = converters.create(format, engine);
    const AudioBuffer recorded = converted(*toMicrophone, AudioBuffer(engine, sound), format);
    const auto all = recorded.floatSamples();
    Samples result;
    for (size_t at = 0; at < all.size(); at += framesPerBlock) {
        const auto part = all.subspan(at, std::min<size_t>(framesPerBlock, all.size() - at));
        const AudioBuffer block(format, std::vector<float>(part.begin(), part.end()));
        const AudioBuffer piece = converted(*fromMicrophone, block, engine);
        result.insert(result.end(), piece.int16Samples().begin(), piece.int16Samples().end());
    }
    return result;
}

struct Options {
    Pace pace;
    AudioFormat microphone;
    bool joined;
};

Options optionsFrom(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption fast(QStringLiteral("fast"), QStringLiteral("don't wait as a speaker would"));
    const QCommandLineOption rate(QStringLiteral("microphone-rate"),
                                  QStringLiteral("record at this rate first"), QStringLiteral("Hz"),
                                  QStringLiteral("16000"));
    const QCommandLineOption joined(QStringLiteral("joined"),
                                    QStringLiteral("all recordings as one, with pauses"));
    parser.addHelpOption();
    parser.addOptions({fast, rate, joined});
    parser.process(arguments);
    return {parser.isSet(fast) ? Pace::asFastAsPossible : Pace::realTime,
            {parser.value(rate).toDouble(), 1, SampleFormat::float32},
            parser.isSet(joined)};
}

struct Item {
    QString reference;
    Samples sound;
};

std::vector<Item> itemsFor(const Options& options)
{
    std::vector<Item> items;
    for (const testing::Recording& recording : testing::humanRecordings())
        items.push_back({recording.reference, throughMicrophone(recording.load(), options.microphone)});
    if (!options.joined)
        return items;
    Item whole;
    for (const Item& item : items) {
        whole.reference += item.reference + QLatin1Char(' ');
        whole.sound.insert(whole.sound.end(), item.sound.begin(), item.sound.end());
        whole.sound.insert(whole.sound.end(), static_cast<size_t>(gap.count() * 16), int16_t{0});
    }
    return {whole};
}

void print(SpeechFramework& framework, const Options& options)
{
    QTextStream out(stdout);
    size_t words = 0;
    size_t errors = 0;
    std::vector<double> waits;
    for (const Item& item : itemsFor(options)) {
        const auto transcript = testing::transcribe(framework, item.sound, options.pace);
        const std::string reference = item.reference.toStdString();
        const size_t said = harness::wordsOf(reference).size();
        const size_t wrong = harness::wordErrors(reference, transcript.text.toStdString());
        words += said;
        errors += wrong;
        waits.push_back(transcript.wait.count());
        out << qSetRealNumberPrecision(1) << Qt::fixed << static_cast<double>(item.sound.size()) / 16000
            << " s  " << wrong << '/' << said << " wrong  " << transcript.wait.count() << " ms  "
            << transcript.pieces.size() << " pieces  " << transcript.text << Qt::endl;
    }
    std::sort(waits.begin(), waits.end());
    out << "total: " << 100.0 * static_cast<double>(errors) / static_cast<double>(words) << " % word errors ("
        << errors << '/' << words << "), wait median " << waits[waits.size() / 2] << " ms, longest "
        << waits.back() << " ms" << Qt::endl;
}

} // namespace
} // namespace corvandi::bench

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    try {
        corvandi::QtMainQueue queue;
        corvandi::LinuxSystemLog log;
        corvandi::PocketSphinxFramework framework(corvandi::installedModelFolder(), queue, log);
        corvandi::bench::print(framework, corvandi::bench::optionsFrom(QCoreApplication::arguments()));
    } catch (const std::exception& error) {
        QTextStream(stderr) << corvandi::describe(error) << Qt::endl;
        return 1;
    }
    return 0;
}
