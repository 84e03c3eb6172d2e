#pragma once

#include <functional>

namespace corvandi {

/// Whether the program starts when the user logs in.
///
/// Thread: main thread only. Everything is a matter of a small local file.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    [[nodiscard]] virtual bool isEnabled() = 0;
    /// Both throw an `Error` when the platform refuses; harmless when it is so already.
    virtual void enable() = 0;
    virtual void disable() = 0;
};

} // namespace corvandi
