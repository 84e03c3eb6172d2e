#pragma once

#include "ports/audio_buffer.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

namespace corvandi {

struct Conversion {
    /// What was converted; may be empty.
    AudioBuffer output;
    /// Why the conversion failed, if it did.
    std::optional<QString> error;
};

/// Converts sound from one format to another. It keeps its state (the resampler's history) from call
/// to call, so that consecutive buffers join without a seam; nothing is held back longer than the
/// resampler's own delay.
///
/// Thread: one at a time, any. Real-time safe but for the output buffer.
class AudioConverter {
public:
    virtual ~AudioConverter() = default;

    /// Takes in all of `buffer`, which may be empty, and makes `frameCapacity` frames at most. What
    /// doesn't fit comes out of the next call.
    [[nodiscard]] virtual Conversion convert(const AudioBuffer& buffer, uint32_t frameCapacity) = 0;
};

/// Thread: any; what it takes is bounded and far below the length of a buffer of sound.
class AudioConverterFactory {
public:
    virtual ~AudioConverterFactory() = default;

    /// A converter between the two formats, or nothing when there is none.
    [[nodiscard]] virtual std::unique_ptr<AudioConverter> create(const AudioFormat& from,
                                                                 const AudioFormat& to) = 0;
};

} // namespace corvandi
