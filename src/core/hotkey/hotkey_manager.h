#pragma once

#include "base/main_queue.h"
#include "ports/event_tap.h"
#include "ports/key_codes.h"

#include <functional>
#include <memory>

namespace corvandi {

/// Turns the keyboard events of the session into two notifications: the hotkey went down, the hotkey
/// was released. The events that make up the hotkey are swallowed, so that no application sees them;
/// what a press means is the owner's business.
///
/// The hotkey is held when its key went down while every required modifier was down; further
/// modifiers don't matter. It is released by its key-up, or by the first required modifier that goes
/// up. The key-up that follows in that case belongs to the application again.
///
/// Thread: main thread only.
class HotKeyManager {
public:
    HotKeyManager(EventTapFactory& taps, MainQueue& queue);
    ~HotKeyManager();
    HotKeyManager(const HotKeyManager&) = delete;
    HotKeyManager& operator=(const HotKeyManager&) = delete;

    /// Run later on the main queue, never inside the tap's callback, in the order of the events.
    std::function<void()> onStart;
    std::function<void()> onStop;

    /// Installs the tap. True when it is there now, whether new or not; false when the platform
    /// refused it, and then nothing has changed.
    [[nodiscard]] bool start();
    /// Removes the tap; a press that is under way ends without `onStop`. Harmless when not started.
    void stop();

    /// Whether the tap is there.
    [[nodiscard]] bool isStarted() const { return tap_ != nullptr; }

    /// Sets the hotkey that governs the next events; a press that is under way stays under way. False
    /// when a tap is installed and the platform refuses to watch this hotkey: nothing is watched then
    /// until `stop` and a `start` that succeeds.
    [[nodiscard]] bool setChord(const KeyChord& chord);
    [[nodiscard]] uint16_t keyCode() const { return chord_.keyCode; }
    [[nodiscard]] uint64_t requiredFlags() const { return chord_.requiredFlags; }

private:
    [[nodiscard]] TapVerdict handle(const KeyEvent& event);
    [[nodiscard]] TapVerdict handleKeyDown(uint16_t code, uint64_t flags);
    [[nodiscard]] TapVerdict handleKeyUp(uint16_t code);
    void handleFlagsChanged(uint64_t flags);
    [[nodiscard]] bool requiredModifiersHeld(uint64_t flags) const;
    void notify(const std::function<void()>& handler);

    EventTapFactory& taps_;
    MainQueue& queue_;
    std::unique_ptr<EventTap> tap_;
    bool active_ = false;
    KeyChord chord_;
};

} // namespace corvandi
