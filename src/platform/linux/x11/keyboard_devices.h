#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace corvandi {

/// One keyboard that produces keys: a piece of hardware, or the server's own one for synthetic keys.
struct KeyboardDevice {
    uint16_t id;
    /// The master keyboard it belongs to.
    uint16_t master;
    bool isXtest;
};

/// All slave keyboards that are plugged in now. Empty when the server has gone.
[[nodiscard]] std::vector<KeyboardDevice> slaveKeyboards(const X11Connection& connection);

} // namespace corvandi
