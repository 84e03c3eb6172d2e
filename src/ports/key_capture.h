#pragma once

#include "base/main_queue.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace corvandi {

/// A key that was pressed, with the modifiers held at that moment (see modifier_flags).
struct CapturedKey {
    /// Nothing for a key that has no virtual key code.
    std::optional<uint16_t> keyCode;
    uint64_t flags = 0;
    /// The code that the window system has given it, for the log.
    uint32_t nativeCode = 0;
};

/// Catches the next key before anybody else sees it: the window manager, this program's own hotkey, the
/// widget with the focus.
///
/// Thread: main thread only.
class KeyCapture {
public:
    virtual ~KeyCapture() = default;

    /// Until the registration is destroyed, every key-down that is not a modifier's nor a repeat goes to
    /// `captured` and nowhere else; the callback may destroy the registration. Nothing when the platform does
    /// not give the keyboard away: then keys only come by way of the window with the focus.
    [[nodiscard]] virtual std::unique_ptr<Registration>
    begin(std::function<void(const CapturedKey&)> captured) = 0;
    /// The virtual key code of a key that came by way of a window, with the code that the window system
    /// has given it. Nothing for modifiers, and for keys that have no virtual key code.
    [[nodiscard]] virtual std::optional<uint16_t> keyCode(uint32_t nativeCode) const = 0;
    /// Whether that key is a modifier's.
    [[nodiscard]] virtual bool isModifier(uint32_t nativeCode) const = 0;
};

} // namespace corvandi
