#include "core/speech/audio_engine.h"
#include "core/speech/speech_service_fixture.h"
#include "support/fake_audio_input.h"

#include <atomic>
#include <functional>
#include <thread>

namespace corvandi::testing {
namespace {

constexpr int dictationCount = 1000;
constexpr int engineCount = 300;

/// Calls `work` with 1, 2, 3 and so on, on a thread of its own and without a pause, until it is
/// destroyed; only when it is far ahead of the last wait it pauses, so that a busy machine costs no memory.
class AudioThread {
public:
    explicit AudioThread(std::function<void(uint32_t)> work)
        : thread_([this, work = std::move(work)] { run(work); })
    {
    }
    ~AudioThread()
    {
        ends_ = true;
        thread_.join();
    }
    AudioThread(const AudioThread&) = delete;
    AudioThread& operator=(const AudioThread&) = delete;

    /// The last call that has begun, and the last one that has returned.
    [[nodiscard]] uint32_t begun() const { return begun_; }
    [[nodiscard]] uint32_t returned() const { return returned_; }
    void waitForCalls(uint32_t count)
    {
        const uint32_t last = returned_ + count;
        limit_ = last + maximalLead;
        while (returned_ < last)
            std::this_thread::yield();
    }

private:
    static constexpr uint32_t maximalLead = 500;

    void run(const std::function<void(uint32_t)>& work)
    {
        for (uint32_t call = 1; !ends_; ++call) {
            begun_ = call;
            work(call);
            returned_ = call;
            while (call >= limit_ && !ends_)
                std::this_thread::yield();
        }
    }

    std::atomic<bool> ends_ = false;
    std::atomic<uint32_t> limit_ = maximalLead;
    std::atomic<uint32_t> begun_ = 0;
    std::atomic<uint32_t> returned_ = 0;
    std::thread thread_;
};

/// What a dictation must at least have received: all numbers from `first` to `last`.
struct Expectation {
    uint32_t first = 0;
    uint32_t last = 0;
};

class SpeechStressTest : public SpeechServiceTest {
protected:
    // One frame each, so that the sound which waits for a slow start stays within the bound.
    void feedNumber(uint32_t number) { service->feed(tagged(static_cast<float>(number), 1)); }

    /// Suspends the start of every dictation at another step while sound is being fed.
    void dictate(AudioThread& audio, int dictation)
    {
        const std::vector<ScriptedStep*> steps{&framework.listing, &framework.formatQuery,
                                               &framework.starting};
        ScriptedStep& suspended = *steps[static_cast<size_t>(dictation) % steps.size()];
        // A copy for every other dictation, a conversion for the ones between.
        framework.format = AudioFormat{48000, dictation % 2 == 0 ? 1u : 2u, SampleFormat::float32};
        suspended.hold();
        const auto starting = start();
        audio.waitForCalls(2);
        suspended.release();
        EXPECT_TRUE(starting.hasSucceeded());
        audio.waitForCalls(2);
    }

    static void expectConsecutive(const std::vector<float>& numbers)
    {
        for (size_t index = 1; index < numbers.size(); ++index)
            ASSERT_EQ(numbers[index], numbers[index - 1] + 1);
    }
};

TEST_F(SpeechStressTest, NothingFedBetweenStartAndFinishIsLostDoubledOrReordered)
{
    std::vector<Expectation> expectations;
    {
        AudioThread audio([this](uint32_t number) { feedNumber(number); });
        uint32_t first = 1;
        for (int dictation = 0; dictation < dictationCount; ++dictation) {
            dictate(audio, dictation);
            const uint32_t last = audio.returned();
            EXPECT_TRUE(finish().hasSucceeded());
            expectations.push_back({first, last});
            // What was being fed while the dictation ended may belong to it, or to none.
            first = audio.begun() + 1;
        }
    }

    ASSERT_EQ(framework.dictations().size(), expectations.size());
    float lastOfPrevious = 0;
    for (size_t index = 0; index < expectations.size(); ++index) {
        const std::vector<float> numbers = tags(framework.dictations()[index]->received);
        ASSERT_FALSE(numbers.empty());
        ASSERT_NO_FATAL_FAILURE(expectConsecutive(numbers));
        EXPECT_LE(numbers.front(), static_cast<float>(expectations[index].first));
        EXPECT_GE(numbers.back(), static_cast<float>(expectations[index].last));
        EXPECT_GT(numbers.front(), lastOfPrevious);
        lastOfPrevious = numbers.back();
    }
    EXPECT_GE(lastOfPrevious, 4.0F * dictationCount);
}

TEST_F(SpeechStressTest, ConversionErrorsOnTheAudioThreadAreAllLoggedOnTheMainThread)
{
    converters.behaviour = FakeAudioConverterFactory::Behaviour::failsWithError;
    EXPECT_TRUE(start().hasSucceeded());
    {
        AudioThread audio([this](uint32_t number) { feedNumber(number); });
        while (audio.returned() < 1000) {
            audio.waitForCalls(20);
            queue.drain();
        }
    }
    EXPECT_TRUE(finish().hasSucceeded());
    queue.drain();
    const size_t failures = converters.calls().size();
    EXPECT_GE(failures, 1000u);
    EXPECT_EQ(log.lines().size(), failures);
}

TEST(AudioEngineStress, NoCallbackRunsOnceTheEngineIsDestroyed)
{
    VirtualQueue queue;
    FakeAudioInput input;
    AudioThread audio([&](uint32_t) { input.deliver(tagged(0.5F, 16)); });
    uint32_t levelCount = 0;
    uint32_t bufferCount = 0;
    for (int round = 0; round < engineCount; ++round) {
        std::atomic<bool> isAlive = true;
        std::atomic<uint32_t> buffers = 0;
        {
            AudioEngine engine(input, queue);
            engine.onBuffer = [&](const AudioBuffer&) {
                EXPECT_TRUE(isAlive);
                ++buffers;
            };
            engine.onLevel = [&](float) {
                EXPECT_TRUE(isAlive);
                ++levelCount;
            };
            EXPECT_TRUE(TaskOutcome<AudioFormat>(engine.start()).hasSucceeded());
            audio.waitForCalls(3);
            queue.drain();
            // Every other engine is stopped properly, the ones between are destroyed as they run.
            if (round % 2 == 0) {
                EXPECT_TRUE(TaskOutcome<>(engine.stop()).hasSucceeded());
            }
        }
        isAlive = false;
        audio.waitForCalls(3);
        queue.drain();
        bufferCount += buffers;
    }
    EXPECT_GE(bufferCount, 2u * engineCount);
    EXPECT_GE(levelCount, 2u * engineCount);
}

} // namespace
} // namespace corvandi::testing
