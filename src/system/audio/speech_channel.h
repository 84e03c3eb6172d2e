#pragma once

#include <cstddef>
#include <limits>
#include <span>
#include <vector>

namespace corvandi {

/// Makes one channel of several by taking the one in which somebody speaks. Adding them up would let
/// a pair with opposite signs cancel each other, and drown one voice among many inputs.
///
/// Every 10 ms it is judged who speaks: a channel that stands out of its own steady noise. The loudest of
/// those in the last 0.3 s of speech is taken; it must be half as loud again as the present one, so that
/// similar channels don't alternate. Nothing changes while nobody speaks. Until somebody has, the loudest
/// channel is taken, the first of equals. A change is a cross-fade over the next 10 ms.
///
/// What comes out does not depend on how the sound was cut into pieces, and nothing is held back.
///
/// Thread: one at a time, any. Allocates in its constructor only.
class SpeechChannel {
public:
    /// At least one channel.
    SpeechChannel(size_t channelCount, double sampleRate);

    /// Appends one sample to `mono` for each whole frame of `samples`, which are interleaved.
    void append(std::span<const float> samples, std::vector<float>& mono);

private:
    struct Channel {
        /// The squares of the present hop's samples, added up.
        double squares = 0;
        /// The mean square of the hop before, and of the steady noise; that is unknown at first.
        double power = 0;
        double noise = std::numeric_limits<double>::infinity();
        bool isSpeaking = false;
        /// How loud it was lately, while somebody spoke.
        double loudness = 0;

        void listen(size_t frames);
    };

    [[nodiscard]] float next(std::span<const float> frame);
    void endHop();
    void choose();

    std::vector<Channel> channels_;
    size_t framesPerHop_;
    size_t framesOfHop_ = 0;
    bool hasHeardSpeech_ = false;
    /// The one that is taken, and the one before it, from which the present hop fades.
    size_t chosen_ = 0;
    size_t former_ = 0;
};

} // namespace corvandi
