#pragma once

#include "support/virtual_queue.h"

#include <functional>

namespace corvandi::testing {

/// A driver for a fake: nothing sleeps.
template<class Driver>
class OnVirtualTime : public Driver {
public:
    [[nodiscard]] bool until(const std::function<bool()>& condition) override
    {
        constexpr int limit = 5000;
        queue.drain();
        for (int passed = 0; passed < limit && !condition(); ++passed)
            queue.advance(std::chrono::milliseconds(1));
        return condition();
    }
    void settle() override { queue.advance(std::chrono::seconds(1)); }

protected:
    VirtualQueue queue;
};

} // namespace corvandi::testing
