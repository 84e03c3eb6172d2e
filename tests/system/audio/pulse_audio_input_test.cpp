#include "recorder.h"
#include "sound_desktop.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <ctime>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using testing::Recorder;
using testing::runFor;
using testing::waitUntil;

/// Each frame of the ramp has a value of its own, which survives as it is.
constexpr size_t rampFrames = 384000;
constexpr float rampStep = 1.0F / 524288.0F;

QString writeRamp(const QTemporaryDir& folder)
{
    std::vector<float> ramp(rampFrames);
    for (size_t i = 0; i < rampFrames; ++i)
        ramp[i] = static_cast<float>(i + 1) * rampStep;
    QFile file(folder.filePath(QStringLiteral("ramp.raw")));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(reinterpret_cast<const char*>(ramp.data()), static_cast<qint64>(rampFrames * sizeof(float)));
    return file.fileName();
}

QStringList rawSound(const QString& device)
{
    return {QStringLiteral("--device=") + device, QStringLiteral("--raw"), QStringLiteral("--rate=48000"),
            QStringLiteral("--channels=1"), QStringLiteral("--format=float32le")};
}

/// Another program that records at the same time. Under load a server itself drops sound now and then;
/// this one shows what there was to record.
class Witness {
public:
    Witness()
    {
        process_.start(QStringLiteral("parec"), rawSound(QStringLiteral("mic"))
                                                    << QStringLiteral("--latency-msec=20"));
    }
    [[nodiscard]] bool hasBegun()
    {
        return waitUntil([this] { return process_.bytesAvailable() > 0; });
    }
    std::vector<float> stop()
    {
        process_.terminate();
        process_.waitForFinished();
        const QByteArray bytes = process_.readAllStandardOutput();
        std::vector<float> samples(static_cast<size_t>(bytes.size()) / sizeof(float));
        std::memcpy(samples.data(), bytes.constData(), samples.size() * sizeof(float));
        return samples;
    }

private:
    QProcess process_;
};

/// Without the silence at both ends.
std::vector<float> trimmed(const std::vector<float>& samples)
{
    const auto isSound = [](float value) { return value != 0; };
    const auto begin = std::find_if(samples.begin(), samples.end(), isSound);
    const auto end = std::find_if(samples.rbegin(), samples.rend(), isSound).base();
    return begin < end ? std::vector<float>(begin, end) : std::vector<float>();
}

class PulseAudioInputTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(recorder.waitForMicrophone()); }

    Recorder recorder;
};

TEST_F(PulseAudioInputTest, TheDevicesOwnFormatIsKnownWithoutAsking)
{
    const AudioFormat format{48000, 1, SampleFormat::float32};
    EXPECT_EQ(recorder.input->inputFormat(), format);
}

TEST_F(PulseAudioInputTest, ARampArrivesFrameByFrameInBlocksOf2048)
{
    const QTemporaryDir folder;
    const QString file = writeRamp(folder);
    Witness witness;
    ASSERT_TRUE(witness.hasBegun());
    ASSERT_TRUE(recorder.start());
    ASSERT_TRUE(recorder.waitForSound());
    QProcess player;
    player.start(QStringLiteral("paplay"), rawSound(QStringLiteral("micfeed")) << file);
    ASSERT_TRUE(waitUntil([&] { return player.state() == QProcess::NotRunning; }, 30s));
    runFor(300ms);
    ASSERT_TRUE(recorder.stop());

    const std::vector<float> heard = trimmed(recorder.samples());
    const std::vector<float> played = trimmed(witness.stop());
    // All of the ramp but what the server may have dropped.
    ASSERT_GE(heard.size(), rampFrames * 9 / 10);
    EXPECT_TRUE(heard == played) << heard.size() << " frames against " << played.size();

    auto lengths = recorder.lengths();
    EXPECT_LE(lengths.back(), Recorder::framesPerBlock);
    lengths.pop_back();
    EXPECT_THAT(lengths, ::testing::Each(Recorder::framesPerBlock));
}

TEST_F(PulseAudioInputTest, TheFirstBlockComesSoonAfterTheStart)
{
    std::vector<double> times;
    for (int i = 0; i < 9; ++i) {
        const auto begin = Recorder::Clock::now();
        ASSERT_TRUE(recorder.start());
        ASSERT_TRUE(recorder.waitForSound());
        times.push_back(std::chrono::duration<double, std::milli>(recorder.firstBlock() - begin).count());
        ASSERT_TRUE(recorder.stop());
    }
    std::sort(times.begin(), times.end());
    // The block itself lasts 43 ms.
    EXPECT_LE(times[times.size() / 2], 120);
}

TEST_F(PulseAudioInputTest, RemovingTheTapDeliversEverythingThatWasRecorded)
{
    ASSERT_TRUE(recorder.start());
    ASSERT_TRUE(recorder.waitForSound());
    runFor(700ms);
    const auto recorded = Recorder::Clock::now() - recorder.firstBlock();
    const auto begin = Recorder::Clock::now();
    ASSERT_TRUE(recorder.stop());
    EXPECT_LT(Recorder::Clock::now() - begin, 1s);

    const double frames = Recorder::framesPerBlock + 48000 * std::chrono::duration<double>(recorded).count();
    // Two of the server's pieces of 10 ms.
    EXPECT_GE(static_cast<double>(recorder.samples().size()), frames - 960);
    EXPECT_LE(static_cast<double>(recorder.samples().size()), frames + 4800);
}

TEST_F(PulseAudioInputTest, NothingComesAfterTheTapWasRemoved)
{
    ASSERT_TRUE(recorder.start());
    ASSERT_TRUE(recorder.waitForSound());
    const auto removing = recorder.input->removeTap();
    ASSERT_TRUE(waitUntil([&] { return removing.isReady(); }));
    const size_t count = recorder.samples().size();
    runFor(200ms);
    EXPECT_EQ(recorder.samples().size(), count);
    recorder.input->stop();
}

TEST_F(PulseAudioInputTest, StartsAgainAfterAStop)
{
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(recorder.start());
        EXPECT_TRUE(recorder.waitForSound());
        ASSERT_TRUE(recorder.stop());
    }
}

TEST_F(PulseAudioInputTest, StartingWhileRunningStartsAnew)
{
    ASSERT_TRUE(recorder.start());
    ASSERT_TRUE(recorder.start());
    EXPECT_TRUE(recorder.waitForSound());
    ASSERT_TRUE(recorder.stop());
}

TEST_F(PulseAudioInputTest, StoppingAndRemovingTheTapWhenNothingRunsIsHarmless)
{
    recorder.input->stop();
    EXPECT_TRUE(recorder.stop());
    EXPECT_TRUE(recorder.start());
    EXPECT_TRUE(recorder.stop());
}

TEST_F(PulseAudioInputTest, AStopDuringTheStartMakesItFail)
{
    recorder.input->installTap(2048, recorder.input->inputFormat(), [](const AudioBuffer&) {});
    bool hasFailed = false;
    const auto run = [](PulseAudioInput& input, bool& failed) -> QCoro::Task<> {
        try {
            co_await input.start({});
        } catch (const Error&) {
            failed = true;
        }
    };
    const auto starting = run(*recorder.input, hasFailed);
    recorder.input->stop();
    EXPECT_TRUE(hasFailed);
}

TEST_F(PulseAudioInputTest, CanBeDestroyedWhileItRecords)
{
    ASSERT_TRUE(recorder.start());
    ASSERT_TRUE(recorder.waitForSound());
    recorder.input.reset();
    const size_t count = recorder.samples().size();
    runFor(100ms);
    EXPECT_EQ(recorder.samples().size(), count);
}

TEST_F(PulseAudioInputTest, IdlingTakesNoTime)
{
    ASSERT_TRUE(recorder.start());
    ASSERT_TRUE(recorder.waitForSound());
    ASSERT_TRUE(recorder.stop());
    const auto processTime = [] {
        timespec time{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    };
    QEventLoop loop;
    QTimer::singleShot(200ms, &loop, &QEventLoop::quit);
    loop.exec();
    const auto before = processTime();
    QTimer::singleShot(2s, &loop, &QEventLoop::quit);
    loop.exec();
    EXPECT_LT(processTime() - before, 20ms);
}

} // namespace
} // namespace corvandi
