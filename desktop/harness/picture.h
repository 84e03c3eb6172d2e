#pragma once

#include "harness/area.h"

#include <cstdint>
#include <vector>

namespace corvandi::harness {

/// What the screen showed at one moment.
class Picture {
public:
    /// Takes it. Throws HarnessError when there is no screen.
    Picture();

    /// The pixels of an area, cut off at the edges of the screen.
    [[nodiscard]] std::vector<uint32_t> pixels(const Area& area) const;

private:
    int width_ = 0;
    int height_ = 0;
    std::vector<uint32_t> pixels_;
};

} // namespace corvandi::harness
