#include "support/transcribing.h"

#include "base/error.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>

#include <algorithm>
#include <cstring>
#include <thread>

namespace corvandi::testing {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double sampleRate = 16000;
/// A tap's block of 2048 frames at 48 kHz.
constexpr size_t samplesPerPiece = 683;
constexpr qsizetype waveHeaderSize = 44;

AudioStream::Node makePiece(std::span<const int16_t> samples)
{
    AudioStream::Node node;
    node.emplace_back(AudioFormat{sampleRate, 1, SampleFormat::int16},
                      std::vector<int16_t>(samples.begin(), samples.end()));
    return node;
}

/// Writes all of `sound` and finishes the stream; says when that was.
Clock::time_point feed(AudioStream& stream, std::span<const int16_t> sound, Pace pace)
{
    const Clock::time_point begin = Clock::now();
    for (size_t at = 0; at < sound.size(); at += samplesPerPiece) {
        const size_t count = std::min(samplesPerPiece, sound.size() - at);
        const std::chrono::duration<double> spoken(static_cast<double>(at + count) / sampleRate);
        if (pace == Pace::realTime)
            std::this_thread::sleep_until(begin + std::chrono::duration_cast<Clock::duration>(spoken));
        stream.yield(makePiece(sound.subspan(at, count)));
    }
    stream.finish();
    return Clock::now();
}

struct Progress {
    std::vector<QString> pieces;
    bool hasStarted = false;
    bool hasFinished = false;
    std::exception_ptr failure;
};

QCoro::Task<> collect(std::shared_ptr<SpeechAnalyzer> analyzer, Progress& progress)
{
    try {
        while (true) {
            std::optional<SpeechResult> result = co_await analyzer->nextResult();
            if (!result)
                break;
            progress.pieces.push_back(result->text);
        }
    } catch (...) {
        progress.failure = std::current_exception();
    }
    progress.hasFinished = true;
}

QCoro::Task<> begin(std::shared_ptr<SpeechAnalyzer> analyzer, std::shared_ptr<AudioStream> stream,
                    Progress& progress)
{
    try {
        co_await analyzer->start(stream);
    } catch (...) {
        progress.failure = std::current_exception();
    }
    progress.hasStarted = true;
}

void runUntil(const bool& condition)
{
    while (!condition)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

} // namespace

Samples Recording::load() const
{
    QFile file(QStringLiteral(CORVANDI_RECORDINGS_FOLDER "/") + name);
    if (!file.open(QIODevice::ReadOnly))
        throw Error(QStringLiteral("no recordings: install the package pocketsphinx-testdata"));
    QByteArray bytes = file.readAll();
    if (bytes.startsWith("RIFF"))
        bytes.remove(0, waveHeaderSize);
    Samples samples(static_cast<size_t>(bytes.size()) / sizeof(int16_t));
    std::memcpy(samples.data(), bytes.constData(), samples.size() * sizeof(int16_t));
    return samples;
}

const std::vector<Recording>& humanRecordings()
{
    static const std::vector<Recording> recordings{
        {QStringLiteral("librivox/sense_and_sensibility_01_austen_64kb-0870.wav"),
         QStringLiteral("and mister john dashwood had then leisure to consider how much there might be "
                        "prudently in his power to do for them")},
        {QStringLiteral("librivox/sense_and_sensibility_01_austen_64kb-0880.wav"),
         QStringLiteral("he was not an ill disposed young man")},
        {QStringLiteral("librivox/sense_and_sensibility_01_austen_64kb-0890.wav"),
         QStringLiteral("unless to be rather cold hearted and rather selfish is to be ill disposed")},
        {QStringLiteral("librivox/sense_and_sensibility_01_austen_64kb-0920.wav"),
         QStringLiteral("had he married a more amiable woman he might have been made still more "
                        "respectable than he was")},
        {QStringLiteral("librivox/sense_and_sensibility_01_austen_64kb-0930.wav"),
         QStringLiteral("he might even have been made amiable himself")},
        {QStringLiteral("cards/001.wav"), QStringLiteral("ten of clubs")},
        {QStringLiteral("cards/002.wav"), QStringLiteral("four queen of clubs")},
        {QStringLiteral("cards/003.wav"), QStringLiteral("seven of clubs")},
        {QStringLiteral("cards/004.wav"), QStringLiteral("five five")},
        {QStringLiteral("cards/005.wav"), QStringLiteral("eight of spades four of clubs seven of hearts")},
        {QStringLiteral("goforward.raw"), QStringLiteral("go forward ten meters")},
        {QStringLiteral("something.raw"), QStringLiteral("go somewhere and do something")},
        {QStringLiteral("tidigits/dhd.2934z.raw"), QStringLiteral("two nine three four zero")},
    };
    return recordings;
}

Transcription transcribe(SpeechFramework& framework, std::span<const int16_t> sound, Pace pace)
{
    const auto analyzer = framework.makeAnalyzer(Locale(QStringLiteral("en-US")));
    const auto stream = std::make_shared<AudioStream>();
    Progress progress;
    const auto starting = begin(analyzer, stream, progress);
    runUntil(progress.hasStarted);
    if (progress.failure)
        std::rethrow_exception(progress.failure);

    const auto collecting = collect(analyzer, progress);
    Clock::time_point finished;
    std::thread writer([&] { finished = feed(*stream, sound, pace); });
    runUntil(progress.hasFinished);
    const Clock::time_point done = Clock::now();
    writer.join();
    if (progress.failure)
        std::rethrow_exception(progress.failure);
    const QString text = QStringList(progress.pieces.begin(), progress.pieces.end()).join(QString());
    return {std::move(progress.pieces), text, done - finished};
}

} // namespace corvandi::testing
