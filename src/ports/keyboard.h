#pragma once

#include "base/main_queue.h"
#include "ports/key_codes.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace corvandi {

enum class KeyDirection { down, up };

/// One synthetic key event. With `text`, the event stands for these UTF-16 units whatever key it names
/// (a key-down types them, the key-up belongs to it and types nothing); without, it is the key
/// `virtualKey` with exactly the modifiers `flags`, not mixed with those that a person holds.
struct SyntheticKeyEvent {
    uint16_t virtualKey = virtual_key::none;
    KeyDirection direction = KeyDirection::down;
    uint64_t flags = 0;
    std::u16string text;

    friend bool operator==(const SyntheticKeyEvent&, const SyntheticKeyEvent&) = default;
};

/// Where synthetic key events come from. Everything posted has been handed to the window system when
/// the source is destroyed, at the latest.
class KeyEventSource {
public:
    virtual ~KeyEventSource() = default;

    /// A new event for `virtualKey`, without flags and text; nothing when the platform can't make it.
    [[nodiscard]] virtual std::optional<SyntheticKeyEvent> makeKeyEvent(uint16_t virtualKey,
                                                                        KeyDirection direction) = 0;
    /// Sends the event to whatever has the keyboard focus, behind those posted before. Delivery is not
    /// confirmed, and the receiving application is never waited for; the window system may be, for a few
    /// milliseconds, so that a long text is better posted in several turns of the main queue. The V key with
    /// Command means the platform's paste shortcut: an adapter posts what the frontmost application takes for
    /// it.
    virtual void post(const SyntheticKeyEvent& event) = 0;
};

/// The keyboard as something that can be played upon.
///
/// Thread: main thread only.
class Keyboard {
public:
    virtual ~Keyboard() = default;

    /// A source that can type all of `text` (which may be empty: a source for shortcuts). Nothing when
    /// there is no such facility, or when it can't produce this text; nothing has been posted then.
    /// Modifiers that a person holds are let go for the receiving application's eyes for the time of each
    /// event, Caps Lock for as long as the source lives. Whatever a person's hands do meanwhile, the text of
    /// an event arrives whole and in order.
    [[nodiscard]] virtual std::unique_ptr<KeyEventSource> createSource(const QString& text) = 0;

    /// Whether the key of any of these modifiers (`modifier_flags`) is down now; false when that can't be
    /// told. At most a millisecond.
    [[nodiscard]] virtual bool isAnyHeld(uint64_t flags) = 0;
    /// Calls `callback` once, as soon as no Shift, Control, Alt, Super or AltGr is held: inside this
    /// call when that is so already (or when held modifiers can't harm here). Waits without limit.
    [[nodiscard]] virtual std::unique_ptr<Registration> whenKeysAreFree(std::function<void()> callback) = 0;
};

} // namespace corvandi
