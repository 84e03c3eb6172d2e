#pragma once

#include "base/main_queue.h"
#include "session/x11/keys/keymap.h"
#include "session/x11/keys/x11_connection.h"

#include <cstdint>
#include <functional>
#include <memory>
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

/// What the server does for people who can't use a keyboard as others do, as far as it would change or end
/// with keys that are typed for them.
struct KeyboardHelps {
    /// Keys count only when they have been down for a while (slow keys), or only once in a while (bounce
    /// keys): typed ones would not arrive.
    uint32_t filters = 0;
    /// Options of sticky keys. With one of them, two keys at once switch sticky keys off, as a person means
    /// it; typed capitals don't.
    uint16_t stickyOptions = 0;

    friend bool operator==(const KeyboardHelps&, const KeyboardHelps&) = default;
};

/// Nothing when the server has gone. One round trip.
[[nodiscard]] std::optional<KeyboardHelps> readHelps(const X11Connection& connection);
/// `helps` without what typing would suffer from or disturb.
[[nodiscard]] KeyboardHelps harmless(KeyboardHelps helps);
/// Queues the request.
void setHelps(const X11Connection& connection, const KeyboardHelps& helps);

/// Waits for the moment at which no modifier key is down. Modifier changes are asked of the server only
/// while somebody waits.
///
/// Thread: main thread only.
class FreeKeysWatch {
public:
    /// `connection` must outlive the watch.
    explicit FreeKeysWatch(const X11Connection& connection)
        : connection_(connection)
    {
    }

    /// Calls `callback` once: inside this call when no modifier is held (or the server has gone). One
    /// round trip.
    [[nodiscard]] std::unique_ptr<Registration> add(std::function<void()> callback);
    /// To be called with every event of the connection.
    void handle(const xcb_generic_event_t& event);

private:
    class Waiter;

    void report();

    const X11Connection& connection_;
    std::vector<std::weak_ptr<std::function<void()>>> waiting_;
};

} // namespace corvandi
