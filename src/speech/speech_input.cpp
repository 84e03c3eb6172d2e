#include "speech/speech_input.h"

#include "speech/buffer_conversion.h"

#include <utility>

namespace corvandi {

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
    BufferConversion conversion = convertBuffer(buffer, route.format, route.converter.get());
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
