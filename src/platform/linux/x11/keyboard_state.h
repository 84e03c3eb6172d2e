#pragma once

#include "platform/linux/x11/keymap.h"
#include "platform/linux/x11/x11_connection.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace corvandi {

/// The master keyboard's state at one moment.
struct KeyboardState {
    uint16_t device;
    /// The group that is in use.
    uint8_t group;
    /// Modifiers whose keys are down.
    uint8_t held;
    /// Modifiers that wait for the next key.
    uint8_t latched;
    /// Modifiers that stay on, such as CapsLock and NumLock.
    uint8_t locked;
};

/// Nothing when the server has gone. One round trip.
[[nodiscard]] std::optional<KeyboardState> readState(const X11Connection& connection);

/// The modifier keys that are down on the master keyboard. One round trip.
[[nodiscard]] std::vector<uint8_t> heldModifierKeys(const X11Connection& connection, const Keymap& keymap);

/// Switches the locks in `affected` to what they are in `locked`, and takes latches back.
void setLocks(const X11Connection& connection, uint8_t affected, uint8_t locked);

} // namespace corvandi
