#pragma once

#include "base/main_queue.h"
#include "base/system_log.h"
#include "platform/audio_buffer.h"
#include "platform/audio_converter.h"
#include "platform/audio_stream.h"
#include "speech/pending_audio.h"

#include <QString>

#include <memory>
#include <mutex>
#include <optional>

namespace corvandi {

/// The road of the sound from the audio thread into the stream that an analyzer reads. While there is
/// no analyzer it keeps the last seconds; `drain` hands them over and lets new buffers through from
/// then on. Every buffer that is fed takes one of the two ways, none both, and their order stays.
///
/// Thread: `feed` on the audio thread (any, one at a time), everything else on the main thread, at the
/// same time. One lock guards all that both read; it is held neither while a buffer is converted nor
/// while one is copied.
class SpeechInput {
public:
    /// Where the sound goes and how it gets there.
    struct Route {
        AudioFormat format;
        /// From the microphone's format to `format`.
        std::shared_ptr<AudioConverter> converter;
        std::shared_ptr<AudioStream> stream;
    };

    /// Conversion errors are written to `log`, on the main thread. Both outlive this object and
    /// everything that it has put on the queue.
    SpeechInput(MainQueue& queue, SystemLog& log);

    /// Takes one buffer of the microphone's sound. Empty ones are ignored, and ones that can't be
    /// converted are dropped.
    void feed(const AudioBuffer& buffer);

    /// Says where the sound will go. It is still kept back until `drain`.
    void connect(Route route);
    /// Hands over what has been kept and begins to stream. Needs a route.
    void drain();
    /// Ends the stream and forgets the route. Buffers that come from now on are kept; one that is just
    /// being converted is dropped.
    void disconnect();
    /// Forgets the sound that has been kept.
    void discardPending();

private:
    /// The route while sound is streamed, nothing while it is kept.
    [[nodiscard]] std::optional<Route> liveRoute() const;
    /// Keeps the buffer in `node`, unless sound is streamed by now: then says where to.
    [[nodiscard]] std::optional<Route> keep(PendingAudio::Buffers node);
    /// Takes what has been kept; nothing, and streaming from then on, when that was all.
    [[nodiscard]] PendingAudio::Buffers takePendingOrGoLive();
    /// `buffer` in the route's format, in a node of its own; no node when that can't be done.
    [[nodiscard]] PendingAudio::Buffers convert(const AudioBuffer& buffer, const Route& route);

    MainQueue& queue_;
    SystemLog& log_;

    mutable std::mutex mutex_;
    PendingAudio pending_;
    std::optional<Route> route_;
    // Only while there is a route.
    bool isStreaming_ = false;
};

} // namespace corvandi
