#include "core/speech/audio_engine.h"
#include "core/speech/speech_service.h"

#include "core/speech/sounds.h"
#include "support/fake_audio_input.h"
#include "support/fake_speech_framework.h"
#include "support/recording_log.h"
#include "support/task_outcome.h"
#include "support/virtual_queue.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <utility>

namespace {

// The replaced allocation functions below have no other place to look at.
thread_local int allocations = 0;
thread_local std::function<void()>* duringNextAllocation = nullptr;

void* counted(std::size_t size)
{
    ++allocations;
    if (auto* interruption = std::exchange(duringNextAllocation, nullptr))
        (*interruption)();
    if (void* memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size)
{
    return counted(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}

namespace corvandi::testing {
namespace {

template<class Work>
int allocationsOf(Work work)
{
    const int before = allocations;
    work();
    return allocations - before;
}

/// Takes work without any allocation of its own, and drops it.
class DroppingQueue : public VirtualQueue {
public:
    void async(std::function<void()> work) override { latest_ = std::move(work); }

private:
    std::function<void()> latest_;
};

/// Gives out a buffer that was made beforehand.
class PreparedConverters : public AudioConverterFactory {
public:
    AudioBuffer prepared = tagged(1, 682, 16000);

    std::unique_ptr<AudioConverter> create(const AudioFormat& /*from*/, const AudioFormat& /*to*/) override
    {
        return std::make_unique<Converter>(prepared);
    }

private:
    class Converter : public AudioConverter {
    public:
        explicit Converter(AudioBuffer& prepared)
            : prepared_(prepared)
        {
        }
        Conversion convert(const AudioBuffer& /*buffer*/, uint32_t /*frameCapacity*/) override
        {
            return {std::move(prepared_), std::nullopt};
        }

    private:
        AudioBuffer& prepared_;
    };
};

class AudioThreadAllocation : public ::testing::Test {
protected:
    DroppingQueue queue;
    RecordingLog log;
    FakeSpeechFramework framework;
    PreparedConverters converters;
    SpeechService service{framework, converters, queue, log, Locale(QStringLiteral("en-US"))};
    const AudioBuffer buffer = tagged(1);
};

TEST_F(AudioThreadAllocation, TheTapAllocatesTheDispatchOfTheLevelOnly)
{
    FakeAudioInput input;
    AudioEngine engine(input, queue);
    engine.onBuffer = [](const AudioBuffer&) {};
    engine.onLevel = [](float) {};
    ASSERT_TRUE(TaskOutcome<AudioFormat>(engine.start()).hasSucceeded());
    EXPECT_EQ(allocationsOf([&] { input.deliver(buffer); }), 1);
}

TEST_F(AudioThreadAllocation, KeepingABufferAllocatesItsSamplesAndItsNode)
{
    EXPECT_EQ(allocationsOf([&] { service.feed(buffer); }), 2);
}

TEST_F(AudioThreadAllocation, StreamingAConvertedBufferAllocatesItsNodeBesideWhatTheConverterDoes)
{
    ASSERT_TRUE(TaskOutcome<>(service.start(microphoneFormat)).hasSucceeded());
    EXPECT_EQ(allocationsOf([&] { service.feed(buffer); }), 1);
    EXPECT_TRUE(TaskOutcome<Transcript>(service.finish()).hasSucceeded());
    EXPECT_EQ(framework.latest().received.size(), 1u);
}

TEST_F(AudioThreadAllocation, StreamingABufferInTheEnginesFormatAllocatesItsSamplesAndItsNode)
{
    framework.format = microphoneFormat;
    ASSERT_TRUE(TaskOutcome<>(service.start(microphoneFormat)).hasSucceeded());
    EXPECT_EQ(allocationsOf([&] { service.feed(buffer); }), 2);
    EXPECT_TRUE(TaskOutcome<Transcript>(service.finish()).hasSucceeded());
}

TEST_F(AudioThreadAllocation, ABufferThatIsBeingCopiedWhenTheEngineBeginsToRunIsStreamed)
{
    framework.format = microphoneFormat;
    service.feed(tagged(1));
    std::function<void()> starting = [&] {
        EXPECT_TRUE(TaskOutcome<>(service.start(microphoneFormat)).hasSucceeded());
    };
    const AudioBuffer second = tagged(2);
    duringNextAllocation = &starting;
    service.feed(second);
    service.feed(tagged(3));
    EXPECT_TRUE(TaskOutcome<Transcript>(service.finish()).hasSucceeded());
    EXPECT_EQ(tags(framework.latest().received), (std::vector<float>{1, 2, 3}));
}

} // namespace
} // namespace corvandi::testing
