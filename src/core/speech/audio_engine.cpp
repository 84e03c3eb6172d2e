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
        std::function<void(float)> onLevel, std::function<void(const QString&)> onEnd)
        : queue_(queue)
        , onBuffer_(std::move(onBuffer))
        , onLevel_(std::move(onLevel))
        , onEnd_(std::move(onEnd))
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

    /// Main thread.
    void reportEnd(const QString& reason) const
    {
        if (!closed_ && onEnd_)
            onEnd_(reason);
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
    const std::function<void(const QString&)> onEnd_;
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
    /// In which the tap was installed.
    AudioFormat format;
    bool isRunning = false;
    bool isStopping = false;
    bool isAbandoned = false;

    static QCoro::Task<AudioFormat> start(std::shared_ptr<Capture> capture, std::shared_ptr<Tap> tap);
    static QCoro::Task<> stop(std::shared_ptr<Capture> capture);
    static AudioInput::EndHandler whenEnded(const std::shared_ptr<Capture>& capture);
    void install(std::shared_ptr<Tap> newTap);
    void ended(const QString& reason);
    void letGo();
    void abandon();
};

void AudioEngine::Capture::install(std::shared_ptr<Tap> newTap)
{
    format = input.inputFormat();
    if (!(format.sampleRate > 0))
        throw Error(QStringLiteral("no audio input available"));
    tap = std::move(newTap);
    input.installTap(tapFrames, format,
                     [installed = tap](const AudioBuffer& buffer) { installed->process(buffer); });
    input.prepare();
}

AudioInput::EndHandler AudioEngine::Capture::whenEnded(const std::shared_ptr<Capture>& capture)
{
    return [weak = std::weak_ptr(capture)](const QString& reason) {
        if (const auto alive = weak.lock())
            alive->ended(reason);
    };
}

QCoro::Task<AudioFormat> AudioEngine::Capture::start(std::shared_ptr<Capture> capture,
                                                     std::shared_ptr<Tap> tap)
{
    co_await capture->gate.enter();
    const auto turn = qScopeGuard([capture] { capture->gate.leave(); });
    if (capture->isRunning)
        co_return AudioFormat(capture->format);
    if (capture->isAbandoned)
        throw Error(QStringLiteral("audio capture was abandoned"));
    capture->install(std::move(tap));
    std::exception_ptr failure;
    try {
        AudioInput::EndHandler ended = whenEnded(capture);
        co_await capture->input.start(std::move(ended));
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
    co_return AudioFormat(capture->format);
}

QCoro::Task<> AudioEngine::Capture::stop(std::shared_ptr<Capture> capture)
{
    co_await capture->gate.enter();
    const auto turn = qScopeGuard([capture] { capture->gate.leave(); });
    if (!capture->isRunning)
        co_return;
    // An end from here on is what was asked for.
    capture->isStopping = true;
    co_await capture->input.removeTap();
    capture->input.stop();
    capture->isStopping = false;
    capture->isRunning = false;
}

void AudioEngine::Capture::ended(const QString& reason)
{
    if (!isRunning || isStopping)
        return;
    letGo();
    // Held here: the callback may start capture again, with a tap of its own.
    const std::shared_ptr<const Tap> tapOfThisRun = tap;
    tapOfThisRun->reportEnd(reason);
}

void AudioEngine::Capture::letGo()
{
    isRunning = false;
    input.stop();
    const QCoro::Task<> removing = input.removeTap();
}

void AudioEngine::Capture::abandon()
{
    isAbandoned = true;
    if (tap)
        tap->close();
    // A task that is at work cleans up by itself.
    if (!isRunning || gate.isOccupied())
        return;
    letGo();
}

AudioEngine::AudioEngine(AudioInput& input, MainQueue& queue)
    : capture_(std::make_shared<Capture>(Capture{input, queue, TurnGate(queue), nullptr, {}}))
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

bool AudioEngine::isInputMuted() const
{
    return capture_->input.isMuted();
}

QCoro::Task<AudioFormat> AudioEngine::start()
{
    return Capture::start(capture_, std::make_shared<Tap>(capture_->queue, onBuffer, onLevel, onEnd));
}

QCoro::Task<> AudioEngine::stop()
{
    return Capture::stop(capture_);
}

} // namespace corvandi
