#pragma once

#include "ports/audio_buffer.h"

#include <cstdint>
#include <vector>

namespace corvandi::testing {

inline constexpr AudioFormat microphoneFormat{48000, 1, SampleFormat::float32};
inline constexpr AudioFormat engineFormat{16000, 1, SampleFormat::float32};

/// `frames` frames of mono sound that all have the value `tag`.
inline AudioBuffer tagged(float tag, uint32_t frames = 2048, double sampleRate = 48000)
{
    return {AudioFormat{sampleRate, 1, SampleFormat::float32}, std::vector<float>(frames, tag)};
}

/// The first sample of each buffer.
inline std::vector<float> tags(const std::vector<AudioBuffer>& buffers)
{
    std::vector<float> result;
    for (const AudioBuffer& buffer : buffers)
        result.push_back(buffer.floatSamples().front());
    return result;
}

} // namespace corvandi::testing
