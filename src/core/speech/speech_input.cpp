#include "core/speech/speech_input.h"

#include <QtGlobal>

#include <limits>
#include <new>
#include <utility>

namespace corvandi {

uint32_t wholeFrames(double count)
{
    constexpr double end = 4294967296.0; // 2^32
    // Written so that a value that is not a number fails as well.
    const bool fits = count >= 0 && count < end;
    if (!fits)
        qFatal("Corvandi: %f frames don't fit into a frame count", count);
    return static_cast<uint32_t>(count);
}

uint32_t addFrames(uint32_t first, uint32_t second)
{
    if (second > std::numeric_limits<uint32_t>::max() - first)
        qFatal("Corvandi: %u + %u frames don't fit into a frame count", first, second);
    return first + second;
}

namespace {

// Room for what the resampler still held from the buffers before.
constexpr uint32_t headroomFrames = 1024;

uint32_t outputCapacity(const AudioBuffer& buffer, const AudioFormat& target)
{
    const double ratio = target.sampleRate / buffer.format().sampleRate;
    return addFrames(wholeFrames(ratio * buffer.frameLength()), headroomFrames);
}

} // namespace

BufferConversion convertBuffer(const AudioBuffer& buffer, const AudioFormat& target,
                               AudioConverter* converter)
{
    try {
        if (buffer.format() == target)
            return {buffer, std::nullopt};
        if (!converter)
            return {};
        Conversion conversion = converter->convert(buffer, outputCapacity(buffer, target));
        if (conversion.error)
            return {std::nullopt, std::move(conversion.error)};
        if (conversion.output.frameLength() == 0)
            return {};
        return {std::move(conversion.output), std::nullopt};
    } catch (const std::bad_alloc&) {
        // One piece of sound is lost; the dictation goes on.
        return {};
    }
}

BufferConversion FormatConverter::convert(const AudioBuffer& buffer)
{
    if (buffer.format() == target_ || buffer.format() == source_)
        return convertBuffer(buffer, target_, converter_.get());
    source_ = buffer.format();
    converter_ = factory_.create(source_, target_);
    if (!converter_)
        return {std::nullopt, QStringLiteral("there is no way from %1 Hz, %2 channels to the engine's format")
                                  .arg(source_.sampleRate)
                                  .arg(source_.channelCount)};
    return convertBuffer(buffer, target_, converter_.get());
}

PendingAudio::Buffers PendingAudio::append(Buffers node)
{
    frames_ = addFrames(frames_, node.front().frameLength());
    buffers_.splice(buffers_.end(), node);
    Buffers dropped;
    while (frames_ > maxFrames && buffers_.size() >= 2) {
        frames_ -= buffers_.front().frameLength();
        dropped.splice(dropped.end(), buffers_, buffers_.begin());
    }
    return dropped;
}

PendingAudio::Buffers PendingAudio::takeAll()
{
    frames_ = 0;
    return std::exchange(buffers_, {});
}

SpeechInput::SpeechInput(MainQueue& queue, SystemLog& log)
    : queue_(queue)
    , log_(log)
{
}

void SpeechInput::feed(const AudioBuffer& buffer)
{
    if (buffer.frameLength() == 0)
        return;
    std::optional<Route> route = liveRoute();
    if (!route)
        route = keep(PendingAudio::Buffers(1, buffer));
    if (!route)
        return;
    PendingAudio::Buffers converted = convert(buffer, *route);
    if (converted.empty())
        return;
    const std::lock_guard guard(mutex_);
    if (isStreaming_)
        route->stream->yield(std::move(converted));
}

std::optional<SpeechInput::Route> SpeechInput::liveRoute() const
{
    const std::lock_guard guard(mutex_);
    return isStreaming_ ? route_ : std::nullopt;
}

std::optional<SpeechInput::Route> SpeechInput::keep(PendingAudio::Buffers node)
{
    // Declared before the guard, so that the memory is given back without the lock.
    PendingAudio::Buffers dropped;
    const std::lock_guard guard(mutex_);
    if (isStreaming_)
        return route_;
    dropped = pending_.append(std::move(node));
    return std::nullopt;
}

PendingAudio::Buffers SpeechInput::convert(const AudioBuffer& buffer, const Route& route)
{
    BufferConversion conversion = route.converter->convert(buffer);
    if (conversion.error) {
        // The audio thread must not log.
        queue_.async([&log = log_, error = *conversion.error] {
            log.write(QStringLiteral("audio conversion error: ") + error);
        });
    }
    PendingAudio::Buffers node;
    if (conversion.buffer)
        node.push_back(std::move(*conversion.buffer));
    return node;
}

void SpeechInput::connect(Route route)
{
    const std::lock_guard guard(mutex_);
    route_ = std::move(route);
}

void SpeechInput::drain()
{
    // Only this thread changes the route: no lock is needed to look at it.
    const std::optional<Route> route = route_;
    if (!route)
        return;
    for (auto buffers = takePendingOrGoLive(); !buffers.empty(); buffers = takePendingOrGoLive()) {
        for (const AudioBuffer& buffer : buffers)
            route->stream->yield(convert(buffer, *route));
    }
}

PendingAudio::Buffers SpeechInput::takePendingOrGoLive()
{
    // One critical section for both: a buffer that is fed finds the sound either kept or streamed.
    const std::lock_guard guard(mutex_);
    PendingAudio::Buffers buffers = pending_.takeAll();
    isStreaming_ = buffers.empty();
    return buffers;
}

void SpeechInput::disconnect()
{
    std::optional<Route> route;
    {
        const std::lock_guard guard(mutex_);
        isStreaming_ = false;
        route.swap(route_);
    }
    if (route)
        route->stream->finish();
}

void SpeechInput::discardPending()
{
    PendingAudio::Buffers discarded;
    const std::lock_guard guard(mutex_);
    discarded = pending_.takeAll();
}

} // namespace corvandi
