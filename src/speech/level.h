#pragma once

#include "platform/audio_buffer.h"

namespace corvandi {

/// The loudness of `buffer`: the root mean square of its first channel, 0 (silence) to 1 (a full-scale
/// square wave). 0 for an empty buffer and for one without float samples.
///
/// Thread: any; real-time safe.
[[nodiscard]] float level(const AudioBuffer& buffer);

} // namespace corvandi
