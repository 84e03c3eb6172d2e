#pragma once

#include "platform/audio_buffer.h"
#include "platform/audio_converter.h"

#include <QString>

#include <optional>

namespace corvandi {

struct BufferConversion {
    /// The sound in the target format; nothing when there is none.
    std::optional<AudioBuffer> buffer;
    /// What the converter said when it failed.
    std::optional<QString> error;
};

/// Brings one buffer into the format `target`: a copy when it has that format, else what `converter`
/// makes of it. Nothing comes out when there is no converter (it may be null), when it fails, and when
/// it has no frames to give yet. The converter is told to wait for more, never that the sound ends, so
/// that the next buffer joins without a seam.
///
/// A buffer so long, or of so low a rate, that the converted length is no 32-bit frame count is a
/// programming error and ends the process.
///
/// Thread: any. Allocates the converted buffer only.
[[nodiscard]] BufferConversion convertBuffer(const AudioBuffer& buffer, const AudioFormat& target,
                                             AudioConverter* converter);

} // namespace corvandi
