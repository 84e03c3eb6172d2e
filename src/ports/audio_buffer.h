#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <span>
#include <variant>
#include <vector>

namespace corvandi {

enum class SampleFormat { float32, int16 };

/// How samples are laid out: always linear PCM in native byte order, channels interleaved.
struct AudioFormat {
    /// Frames per second; 0 means that there is no such device.
    double sampleRate = 0;
    uint32_t channelCount = 0;
    SampleFormat sampleFormat = SampleFormat::float32;

    friend bool operator==(const AudioFormat&, const AudioFormat&) = default;
};

/// A piece of sound. A plain value: copying it copies the samples.
class AudioBuffer {
public:
    /// Samples in full scale: -1...1 as float32, -32768...32767 as int16.
    using Samples = std::variant<std::vector<float>, std::vector<int16_t>>;

    AudioBuffer() = default;
    /// A buffer whose samples are all valid; their number must be a multiple of the channel count, and
    /// their type the format's.
    AudioBuffer(AudioFormat format, Samples samples)
        : format_(format)
        , samples_(std::move(samples))
    {
    }

    [[nodiscard]] const AudioFormat& format() const { return format_; }
    /// The number of frames (samples per channel).
    [[nodiscard]] uint32_t frameLength() const
    {
        const size_t count = std::visit([](const auto& values) { return values.size(); }, samples_);
        return format_.channelCount == 0 ? 0 : static_cast<uint32_t>(count / format_.channelCount);
    }
    /// All samples, frame by frame; empty when the buffer holds the other sample format.
    [[nodiscard]] std::span<const float> floatSamples() const
    {
        const auto* values = std::get_if<std::vector<float>>(&samples_);
        return values ? std::span<const float>(*values) : std::span<const float>();
    }
    [[nodiscard]] std::span<const int16_t> int16Samples() const
    {
        const auto* values = std::get_if<std::vector<int16_t>>(&samples_);
        return values ? std::span<const int16_t>(*values) : std::span<const int16_t>();
    }
    /// Write access for whoever fills the buffer.
    [[nodiscard]] Samples& samples() { return samples_; }

private:
    AudioFormat format_;
    Samples samples_;
};

/// A stream of sound from its writer (the capture side) to one reader (a speech engine's thread),
/// unbounded, so that writing never waits.
///
/// Thread: any for all operations.
class AudioStream {
public:
    /// A buffer in its list node: made by the writer, so that handing it over allocates nothing.
    using Node = std::list<AudioBuffer>;

    /// Appends what `node` holds. Ignored after `finish`.
    void yield(Node node)
    {
        const std::lock_guard guard(mutex_);
        if (finished_)
            return;
        buffers_.splice(buffers_.end(), node);
        available_.notify_one();
    }

    /// Says that nothing more will come. What is in the stream can still be read.
    void finish()
    {
        const std::lock_guard guard(mutex_);
        finished_ = true;
        available_.notify_all();
    }

    /// Waits for the next buffer; nothing when the stream has been finished and read to its end.
    [[nodiscard]] std::optional<AudioBuffer> next()
    {
        std::unique_lock guard(mutex_);
        available_.wait(guard, [this] { return finished_ || !buffers_.empty(); });
        if (buffers_.empty())
            return std::nullopt;
        Node first;
        first.splice(first.end(), buffers_, buffers_.begin());
        guard.unlock();
        return std::move(first.front());
    }

private:
    std::mutex mutex_;
    std::condition_variable available_;
    Node buffers_;
    bool finished_ = false;
};

} // namespace corvandi
