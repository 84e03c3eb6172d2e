#pragma once

#include "ports/audio_buffer.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace corvandi {

enum class ConverterInputStatus { haveData, noDataNow, endOfStream };

/// What a converter is given when it asks for input. `buffer` is set with `haveData` only and stays
/// valid until the conversion returns.
struct ConverterInput {
    ConverterInputStatus status;
    const AudioBuffer* buffer;
};

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
    using InputBlock = std::function<ConverterInput()>;

    virtual ~AudioConverter() = default;

    /// Asks `input` for source buffers until it says `noDataNow` (more may come in a later call) or
    /// `endOfStream`, or until `frameCapacity` frames have been made.
    [[nodiscard]] virtual Conversion convert(uint32_t frameCapacity, const InputBlock& input) = 0;
};

class AudioConverterFactory {
public:
    virtual ~AudioConverterFactory() = default;

    /// A converter between the two formats, or nothing when there is none.
    [[nodiscard]] virtual std::unique_ptr<AudioConverter> create(const AudioFormat& from,
                                                                 const AudioFormat& to) = 0;
};

} // namespace corvandi
