#pragma once

#include "platform/audio_buffer.h"

namespace corvandi {

/// What the English model was trained on.
constexpr AudioFormat engineFormat{16000, 1, SampleFormat::int16};

} // namespace corvandi
