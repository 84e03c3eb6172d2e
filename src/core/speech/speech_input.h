#pragma once

#include "base/main_queue.h"
#include "ports/audio_buffer.h"
#include "ports/audio_converter.h"
#include "ports/system_log.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace corvandi {

/// `count` without its fraction. A value that a frame count can't hold is a programming error and ends
/// the process.
[[nodiscard]] uint32_t wholeFrames(double count);

/// The sum of two frame counts. A sum that a frame count can't hold is a programming error and ends the
/// process.
[[nodiscard]] uint32_t addFrames(uint32_t first, uint32_t second);

struct BufferConversion {
    /// The sound in the target format; nothing when there is none.
    std::optional<AudioBuffer> buffer;
    /// What the converter said when it failed.
    std::optional<QString> error;
};

/// Brings one buffer into the format `target`: a copy when it has that format, else what `converter`
/// makes of it, which is given the buffer once. Nothing comes out when there is no converter (it may be
/// null), when it fails, and when it has no frames to give yet.
///
/// A buffer so long, or of so low a rate, that the converted length is no 32-bit frame count is a
/// programming error and ends the process.
///
/// Thread: any. Allocates the converted buffer only.
[[nodiscard]] BufferConversion convertBuffer(const AudioBuffer& buffer, const AudioFormat& target,
                                             AudioConverter* converter);

/// Brings the sound of one dictation into the engine's format, from whichever format it comes in: after
/// its microphone has gone, a dictation can go on with another one.
///
/// A converter for a new format is made where the first such buffer is converted, that is on the audio
/// thread while sound is streamed. That happens once for each recording and takes less time than the
/// conversion of a buffer; handing it to the main thread would mean to keep and to order all sound that
/// comes meanwhile.
///
/// Thread: any, one at a time.
class FormatConverter {
public:
    /// `converter` is the one from `source` to `target`; `factory`, which outlives this object, makes the
    /// others.
    FormatConverter(AudioConverterFactory& factory, const AudioFormat& source, const AudioFormat& target,
                    std::unique_ptr<AudioConverter> converter)
        : factory_(factory)
        , source_(source)
        , target_(target)
        , converter_(std::move(converter))
    {
    }

    /// What `convertBuffer` makes of `buffer`. That there is no converter for its format is an error of
    /// the first such buffer only.
    [[nodiscard]] BufferConversion convert(const AudioBuffer& buffer);

private:
    AudioConverterFactory& factory_;
    /// Of the latest buffer that needed a converter.
    AudioFormat source_;
    AudioFormat target_;
    /// Null when there is none for `source_`.
    std::unique_ptr<AudioConverter> converter_;
};

/// The sound that was captured before anybody could take it, oldest first; only the last seconds of
/// it. Handing buffers in and out moves list nodes and allocates nothing.
///
/// Thread: any, one at a time; its owner locks.
class PendingAudio {
public:
    using Buffers = AudioStream::Node;

    /// The bound on the frames that are kept: 8 seconds at 48 kHz.
    static constexpr uint32_t maxFrames = 384000;

    [[nodiscard]] const Buffers& buffers() const { return buffers_; }
    /// The sum of the buffers' frame lengths.
    [[nodiscard]] uint32_t frames() const { return frames_; }

    /// Appends the one buffer that `node` holds and returns the oldest ones that had to go to keep the
    /// bound. The newest is always kept, even when it alone exceeds the bound.
    [[nodiscard]] Buffers append(Buffers node);
    /// Takes everything out, oldest first.
    [[nodiscard]] Buffers takeAll();

private:
    Buffers buffers_;
    uint32_t frames_ = 0;
};

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
        std::shared_ptr<FormatConverter> converter;
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
