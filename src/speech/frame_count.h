#pragma once

#include <cstdint>

namespace corvandi {

/// `count` without its fraction. A value that a frame count can't hold is a programming error and ends
/// the process.
[[nodiscard]] uint32_t wholeFrames(double count);

/// The sum of two frame counts. A sum that a frame count can't hold is a programming error and ends the
/// process.
[[nodiscard]] uint32_t addFrames(uint32_t first, uint32_t second);

} // namespace corvandi
