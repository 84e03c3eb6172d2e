#pragma once

#include "base/main_queue.h"
#include "ports/key_capture.h"
#include "ports/system_log.h"
#include "session/x11/keys/x11_connection.h"

#include <xcb/xinput.h>

#include <bitset>
#include <optional>
#include <vector>

namespace corvandi {

/// The virtual key code of the key with the server's code; nothing for modifiers (Caps Lock is one) and for
/// keys that have none.
[[nodiscard]] std::optional<uint16_t> capturableKey(uint32_t x11KeyCode);

/// Whether the key with the server's code is a modifier's, also one that has no virtual key code.
[[nodiscard]] bool isModifierKey(uint32_t x11KeyCode);

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
    std::optional<uint8_t> neutralKey_;
    X11EventPump pump_;
};

/// The keyboards of an X session, held by active asynchronous grabs of the slave devices, on a connection
/// of its own. Such a grab comes before the hotkey's tap, before window managers and before everything
/// else that listens to the master keyboard, and the window keeps its focus. Keyboards that are plugged
/// in meanwhile are held as well. When the program dies, the server gives the keyboards back.
///
/// `begin` takes a few round trips (well under a millisecond each) and refuses without a server and when
/// another program holds all keyboards in the same way; the log says so. Server gone while they are held:
/// logged, and no key comes any more.
class X11KeyCapture : public KeyCapture {
public:
    /// `log` must outlive the capture and what it has begun.
    explicit X11KeyCapture(SystemLog& log)
        : log_(log)
    {
    }

    [[nodiscard]] std::unique_ptr<Registration>
    begin(std::function<void(const CapturedKey&)> captured) override;
    /// `nativeCode` is the server's key code, which Qt calls the native scan code.
    [[nodiscard]] std::optional<uint16_t> keyCode(uint32_t nativeCode) const override;
    [[nodiscard]] bool isModifier(uint32_t nativeCode) const override { return isModifierKey(nativeCode); }

private:
    SystemLog& log_;
};

} // namespace corvandi
