#pragma once

#include "base/error.h"
#include "ports/login_item.h"

#include <optional>

namespace corvandi::testing {

/// A login item in memory, which refuses changes when the test says why.
class FakeLoginItem : public LoginItem {
public:
    bool enabled = false;
    /// What each change fails with.
    std::optional<QString> failure;

    [[nodiscard]] bool isEnabled() override { return enabled; }
    void enable() override { set(true); }
    void disable() override { set(false); }

private:
    void set(bool on)
    {
        if (failure)
            throw Error(*failure);
        enabled = on;
    }
};

} // namespace corvandi::testing
