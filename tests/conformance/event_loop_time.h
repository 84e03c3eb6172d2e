#pragma once

#include "support/event_loop.h"

#include <functional>

namespace corvandi::testing {

/// A driver for an adapter, which answers while the event loop runs.
template<class Driver>
class OnEventLoop : public Driver {
public:
    [[nodiscard]] bool until(const std::function<bool()>& condition) override
    {
        return waitUntil(condition, std::chrono::seconds(10));
    }
    void settle() override { runFor(std::chrono::milliseconds(50)); }
};

} // namespace corvandi::testing
