#pragma once

#include "support/transcribing.h"

#include <cstddef>

namespace corvandi::testing {

// Recordings as they would be at another level and in a noise. The same each time. Levels in dB below full
// scale.

enum class Noise { white, pink, babble };

/// How loud the speech in `sound` is: the root mean square of the frames that are not pauses.
[[nodiscard]] double speechLevel(const Samples& sound);
/// `sound` with its speech at `level`, rounded to 16 bits as a converter would.
[[nodiscard]] Samples atLevel(const Samples& sound, double level);
/// So many samples of noise. Babble is all human recordings at once but the one of index `except`.
[[nodiscard]] Samples noise(Noise kind, size_t count, double level, size_t except = SIZE_MAX);
/// The human recording of this index, its speech at `level`, in a noise that is softer by `distance` dB and
/// lasts half a second longer on both sides.
[[nodiscard]] Samples recordingInNoise(size_t index, double level, Noise kind, double distance);

} // namespace corvandi::testing
