#include "recorder.h"
#include "sound_desktop.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <algorithm>
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

void play(QProcess& player, const QString& file)
{
    player.start(QStringLiteral("paplay"),
                 {QStringLiteral("-d"), QStringLiteral("micfeed"), QStringLiteral("--raw"),
                  QStringLiteral("--rate=48000"), QStringLiteral("--channels=1"),
                  QStringLiteral("--format=float32le"), file});
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
    ASSERT_TRUE(recorder.start());
    QProcess player;
    play(player, file);
    ASSERT_TRUE(waitUntil([&] { return player.state() == QProcess::NotRunning; }, 30s));
    runFor(300ms);
    ASSERT_TRUE(recorder.stop());

    const std::vector<float> samples = recorder.samples();
    const auto begin = std::find_if(samples.begin(), samples.end(), [](float value) { return value != 0; });
    ASSERT_GE(static_cast<size_t>(samples.end() - begin), rampFrames);
    size_t wrong = 0;
    for (size_t i = 0; i < rampFrames; ++i)
        wrong += *(begin + static_cast<ptrdiff_t>(i)) == static_cast<float>(i + 1) * rampStep ? 0 : 1;
    EXPECT_EQ(wrong, 0U);

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
    EXPECT_LT(Recorder::Clock::now() - begin, 150ms);

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
            co_await input.start();
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
    EXPECT_LT(processTime() - before, 5ms);
}

} // namespace
} // namespace corvandi
