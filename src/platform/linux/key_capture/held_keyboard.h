#pragma once

#include "base/registration.h"
#include "base/system_log.h"
#include "platform/key_capture.h"
#include "platform/linux/x11/x11_connection.h"
#include "platform/linux/x11/x11_event_pump.h"

#include <xcb/xinput.h>

#include <bitset>
#include <optional>
#include <vector>

namespace corvandi {

/// The virtual key code of the key with the server's code; nothing for modifiers (Caps Lock is one) and for
/// keys that have none.
[[nodiscard]] std::optional<uint16_t> capturableKey(uint32_t x11KeyCode);

/// All keyboards of the session, kept for us alone until this is destroyed.
///
/// While it is grabbed, a slave keyboard is cut off from its master. So the master misses what happens to
/// keys: those that were let go of are released there when the keyboards are given back, and one that is
/// still down then does not go on to repeat.
class HeldKeyboard : public Registration {
public:
    using Callback = std::function<void(const CapturedKey&)>;

    HeldKeyboard(X11Connection connection, SystemLog& log, Callback captured);
    ~HeldKeyboard() override;

    HeldKeyboard(const HeldKeyboard&) = delete;
    HeldKeyboard& operator=(const HeldKeyboard&) = delete;

    /// Takes all keyboards that are not held yet; false when there is none that it holds.
    [[nodiscard]] bool hold();

private:
    void selectKeyboardChanges() const;
    void readKeysDown();
    void handle(const xcb_generic_event_t& event);
    void keyPressed(const xcb_input_key_press_event_t& event);
    void keyReleased(uint32_t keyCode);
    void stopRepeating(uint16_t device);
    [[nodiscard]] uint8_t modifiers() const;

    X11Connection connection_;
    SystemLog& log_;
    Callback captured_;
    std::vector<uint16_t> devices_;
    /// The keys that are down for the master keyboard, and those of them that were let go of here.
    std::bitset<256> down_;
    std::bitset<256> released_;
    X11EventPump pump_;
};

} // namespace corvandi
