#pragma once

#include "ports/key_codes.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace corvandi {

/// What a tap reports. The numbers are those of the event source that the decision table was written
/// for; values outside this list may occur and are passed on.
enum class KeyEventType : uint32_t {
    keyDown = 10,
    keyUp = 11,
    flagsChanged = 12,
    tapDisabledByTimeout = 0xFFFFFFFE,
    tapDisabledByUserInput = 0xFFFFFFFF,
};

/// One event of the keyboard. `keyCode` must lie in 0...65535; a source that delivers anything else is
/// broken beyond repair. `flags` are the modifiers held after the event (`modifier_flags`), possibly
/// with further bits that mean nothing here.
struct KeyEvent {
    KeyEventType type;
    int64_t keyCode;
    uint64_t flags;
};

enum class TapVerdict { pass, swallow };

/// An installed watch on the keyboard of the whole session. Destroying it removes it.
///
/// A tap reports at least the key-down and key-up of the watched chord, and the modifier changes while
/// it is held; whether it reports other keys is the platform's choice. Events arrive in order. A tap
/// that has to claim a chord in advance swallows a matched key-down whatever the verdict says.
///
/// A tap must never make the keyboard wait: not when this process is slow, stopped or killed.
///
/// Thread: main thread only, the callback too.
class EventTap {
public:
    using Callback = std::function<TapVerdict(const KeyEvent&)>;

    virtual ~EventTap() = default;

    /// Switches delivery on or off. A new tap is off.
    virtual void setEnabled(bool enabled) = 0;
    /// Watches `chord` from now on in place of the present one. Returns false when the platform refuses
    /// it (another program holds the chord); then nothing is watched.
    [[nodiscard]] virtual bool watch(const KeyChord& chord) = 0;
};

/// The keyboard as something that can be tapped.
class EventTapFactory {
public:
    virtual ~EventTapFactory() = default;

    /// Installs a tap that watches `chord`. Returns nothing when the platform refuses it: a missing
    /// facility or permission, or another program that holds the chord (the log names it).
    [[nodiscard]] virtual std::unique_ptr<EventTap> create(const KeyChord& chord,
                                                           EventTap::Callback callback) = 0;
};

} // namespace corvandi
