#pragma once

#include "harness/waiting.h"

#include <memory>

// Xlib's own header defines macros such as None and Bool; it stays out of this one.
struct _XDisplay;

namespace corvandi::harness {

/// A connection to the display of the current environment.
class XDisplay {
public:
    /// Throws HarnessError when there is no display.
    XDisplay();

    [[nodiscard]] _XDisplay* get() const { return display_.get(); }
    /// Waits until the server has sent an event; false when `deadline` passes first.
    [[nodiscard]] bool waitForEvent(Clock::time_point deadline) const;

private:
    struct Close {
        void operator()(_XDisplay* display) const;
    };
    std::unique_ptr<_XDisplay, Close> display_;
};

} // namespace corvandi::harness
