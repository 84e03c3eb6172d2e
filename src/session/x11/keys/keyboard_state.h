#pragma once

#include "base/main_queue.h"
#include "session/x11/keys/keymap.h"
#include "session/x11/keys/keymap_reader.h"
#include "session/x11/keys/x11_connection.h"

#include <xcb/xinput.h>

#include <bitset>
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

/// A question for the state that is already on its way. Must be asked for its answer exactly once.
struct StateRequest {
    xcb_xkb_get_state_cookie_t cookie;
};
[[nodiscard]] StateRequest requestState(const X11Connection& connection);
[[nodiscard]] std::optional<KeyboardState> stateOf(const X11Connection& connection, StateRequest request);

/// Keys, by their codes.
using KeySet = std::bitset<256>;

/// The keys that are down on the master keyboard; none when the server has gone. One round trip.
[[nodiscard]] KeySet keysDown(const X11Connection& connection);
[[nodiscard]] KeySet keysDown(const X11Connection& connection, xcb_query_keymap_cookie_t question);

/// A question for the keys that are down on some keyboards; without those that have gone. Must be asked for
/// its answer exactly once.
struct KeysRequest {
    std::vector<xcb_input_query_device_state_cookie_t> cookies;
};
[[nodiscard]] KeysRequest requestKeysDownOn(const X11Connection& connection,
                                            const std::vector<uint16_t>& devices);
[[nodiscard]] KeySet keysDownOn(const X11Connection& connection, const KeysRequest& request);

/// The keys that are modifiers while they are down.
[[nodiscard]] KeySet heldModifierKeys(const Keymap& keymap);

/// Switches the locks in `affected` to what they are in `locked`, and takes latches back.
void setLocks(const X11Connection& connection, uint8_t affected, uint8_t locked);
/// Lets these modifiers wait for the next key.
void latch(const X11Connection& connection, uint8_t modifiers);

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
/// Lets the server switch the filters as they are in `helps` when the connection ends, however it does; with
/// nothing, not any more. Queues the request.
void resetWithConnection(const X11Connection& connection, const std::optional<KeyboardHelps>& helps);
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
