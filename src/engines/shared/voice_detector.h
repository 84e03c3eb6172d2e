#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace corvandi {

/// Tells speech from what else a microphone hears, frame by frame (16 kHz, mono). What counts is how far a
/// sound stands out from the background, not how loud it is: a microphone may be turned down. It learns the
/// background as it listens; make one for each dictation.
///
/// Thread: one at a time, any.
class VoiceDetector {
public:
    /// 20 ms at 16 kHz.
    static constexpr size_t samplesPerFrame = 320;

    VoiceDetector();
    ~VoiceDetector();
    VoiceDetector(const VoiceDetector&) = delete;
    VoiceDetector& operator=(const VoiceDetector&) = delete;

    /// Whether `frame`, which has exactly `samplesPerFrame` samples, is part of speech.
    [[nodiscard]] bool hears(std::span<const int16_t> frame);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace corvandi
