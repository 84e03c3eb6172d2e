#include "core/speech/audio_engine.h"

#include "base/error.h"
#include "core/speech/speech_service.h"

#include <QScopeGuard>

#include <array>
#include <cmath>
#include <cstddef>
#include <exception>
#include <mutex>
#include <type_traits>
#include <utility>

namespace corvandi {
namespace {

// Independent partial sums: a compiler may not reorder one float sum, so a single one would keep it
// from using vector registers.
constexpr size_t laneCount = 8;

/// The sum of the squares of `count` samples, of which each is `stride` after the one before. With a
/// constant stride of one the inner loop becomes vector code.
template<class Stride>
double sumOfSquares(const float* samples, size_t count, Stride stride)
{
    std::array<float, laneCount> lanes{};
    const size_t wholeBlocks = count - count % laneCount;
    for (size_t block = 0; block < wholeBlocks; block += laneCount) {
        for (size_t lane = 0; lane < laneCount; ++lane) {
            const float sample = samples[(block + lane) * stride];
            lanes[lane] += sample * sample;
        }
    }
    double sum = 0;
    for (const float lane : lanes)
        sum += static_cast<double>(lane);
    for (size_t index = wholeBlocks; index < count; ++index) {
        const auto sample = static_cast<double>(samples[index * stride]);
        sum += sample * sample;
    }
    return sum;
}

} // namespace

float level(const AudioBuffer& buffer)
{
    const std::span<const float> samples = buffer.floatSamples();
    const size_t stride = buffer.format().channelCount;
    if (stride == 0 || samples.size() < stride)
        return 0;
    const size_t frames = samples.size() / stride;
    const double sum = stride == 1 ? sumOfSquares(samples.data(), frames, std::integral_constant<size_t, 1>())
                                   : sumOfSquares(samples.data(), frames, stride);
    return static_cast<float>(std::sqrt(sum / static_cast<double>(frames)));
}

namespace {

constexpr uint32_t tapFrames = 2048; // 43 ms at 48 kHz

/// What one start has installed: the callbacks as they were then. Shared by the input, which calls
/// `process`, and the levels that are on their way to the main thread.
class Tap : public std::enable_shared_from_this<Tap> {
public:
    Tap(MainQueue& queue, std::function<void(const AudioBuffer&)> onBuffer,
        std::function<void(float)> onLevel)
        : queue_(queue)
        , onBuffer_(std::move(onBuffer))
        , onLevel_(std::move(onLevel))
    {
    }

    /// Audio thread. Allocates nothing but the dispatch of the level.
    void process(const AudioBuffer& buffer)
    {
        // Taken by someone else only while the engine is being destroyed.
        const std::lock_guard guard(mutex_);
        if (closed_)
            return;
        if (onBuffer_)
            onBuffer_(buffer);
        queue_.async([tap = shared_from_this(), loudness = level(buffer)] { tap->report(loudness); });
    }

    /// Main thread. No callback runs after this.
    void close()
    {
        const std::lock_guard guard(mutex_);
        closed_ = true;
    }

private:
    // The main thread, the only one that closes, needs no lock to look.
    void report(float loudness) const
    {
        if (!closed_ && onLevel_)
            onLevel_(loudness);
    }

    MainQueue& queue_;
    const std::function<void(const AudioBuffer&)> onBuffer_;
    const std::function<void(float)> onLevel_;
    std::mutex mutex_;
    bool closed_ = false;
};

} // namespace

/// What the engine's tasks work on: it outlives an engine that is destroyed while they are suspended.
struct AudioEngine::Capture {
    AudioInput& input;
    MainQueue& queue;
    TurnGate gate;
    std::shared_ptr<Tap> tap;
    bool isRunning = false;
    bool isAbandoned = false;

    static QCoro::Task<> start(std::shared_ptr<Capture> capture, std::shared_ptr<Tap> tap);
    static QCoro::Task<> stop(std::shared_ptr<Capture> capture);
    void install(std::shared_ptr<Tap> newTap);
    void abandon();
};

void AudioEngine::Capture::install(std::shared_ptr<Tap> newTap)
{
    const AudioFormat format = input.inputFormat();
    if (!(format.sampleRate > 0))
        throw Error(QStringLiteral("no audio input available"));
    tap = std::move(newTap);
    input.installTap(tapFrames, format,
                     [installed = tap](const AudioBuffer& buffer) { installed->process(buffer); });
    input.prepare();
}

QCoro::Task<> AudioEngine::Capture::start(std::shared_ptr<Capture> capture, std::shared_ptr<Tap> tap)
{
    co_await capture->gate.enter();
    const auto turn = qScopeGuard([capture] { capture->gate.leave(); });
    if (capture->isRunning)
        co_return;
    if (capture->isAbandoned)
        throw Error(QStringLiteral("audio capture was abandoned"));
    capture->install(std::move(tap));
    std::exception_ptr failure;
    try {
        co_await capture->input.start();
    } catch (...) {
        failure = std::current_exception();
    }
    if (!failure && capture->isAbandoned) {
        capture->input.stop();
        failure = std::make_exception_ptr(Error(QStringLiteral("audio capture was abandoned")));
    }
    if (failure) {
        co_await capture->input.removeTap();
        std::rethrow_exception(failure);
    }
    capture->isRunning = true;
}

QCoro::Task<> AudioEngine::Capture::stop(std::shared_ptr<Capture> capture)
{
    co_await capture->gate.enter();
    const auto turn = qScopeGuard([capture] { capture->gate.leave(); });
    if (!capture->isRunning)
        co_return;
    co_await capture->input.removeTap();
    capture->input.stop();
    capture->isRunning = false;
}

void AudioEngine::Capture::abandon()
{
    isAbandoned = true;
    if (tap)
        tap->close();
    // A task that is at work cleans up by itself.
    if (!isRunning || gate.isOccupied())
        return;
    isRunning = false;
    input.stop();
    const QCoro::Task<> removing = input.removeTap();
}

AudioEngine::AudioEngine(AudioInput& input, MainQueue& queue)
    : capture_(std::make_shared<Capture>(Capture{input, queue, TurnGate(queue), nullptr}))
{
}

AudioEngine::~AudioEngine()
{
    capture_->abandon();
}

bool AudioEngine::running() const
{
    return capture_->isRunning;
}

AudioFormat AudioEngine::inputFormat() const
{
    return capture_->input.inputFormat();
}

QCoro::Task<> AudioEngine::start()
{
    return Capture::start(capture_, std::make_shared<Tap>(capture_->queue, onBuffer, onLevel));
}

QCoro::Task<> AudioEngine::stop()
{
    return Capture::stop(capture_);
}

} // namespace corvandi
