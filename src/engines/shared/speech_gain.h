#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace corvandi {

/// Brings speech that is softer or louder than usual into the range that recognisers do best with, whatever
/// the microphone is set to, and leaves all other as it is. It follows the speaker slowly, over a second of
/// his voice, so that loud and soft sounds keep their proportion.
///
/// Keep one for all dictations: what it has learned is where the next one begins.
///
/// Thread: one at a time, any.
class SpeechGain {
public:
    /// `level` is what `level()` said earlier, if anything; one that no microphone can have is ignored.
    explicit SpeechGain(std::optional<double> level = std::nullopt);

    /// A dictation begins, perhaps with another voice or microphone: the first sounds of it count for more.
    void beginDictation();
    /// Takes a frame of voice into account.
    void learn(std::span<const int16_t> voice);
    /// The sound as it is to be recognised. Clipped rather than wrapped.
    [[nodiscard]] std::vector<int16_t> apply(std::span<const int16_t> sound) const;
    /// The level of the voice in dB below full scale; nothing before any was heard.
    [[nodiscard]] std::optional<double> level() const { return level_; }

private:
    std::optional<double> level_;
    /// How many frames the level stands for.
    size_t weight_ = 0;
};

} // namespace corvandi
