#pragma once

namespace corvandi::harness {

/// A part of the screen, in pixels.
struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    friend bool operator==(const Area&, const Area&) = default;
};

} // namespace corvandi::harness
