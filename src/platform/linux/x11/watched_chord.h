#pragma once

#include "platform/linux/x11/chord_grabs.h"
#include "platform/linux/x11/modifier_masks.h"

#include <cstdint>
#include <map>
#include <optional>

namespace corvandi {

/// What tap and typing must know of each other, since the server can't tell a person's key from a
/// typed one.
///
/// Thread: main thread only.
struct WatchedChord {
    /// What the tap claims at the moment: typing finds another way to a character that lies there.
    std::optional<X11Chord> chord;
    /// The keyboard on which a person holds the chord right now.
    std::optional<uint16_t> heldOn;
    /// The keyboard on which typing plays.
    std::optional<uint16_t> typedOn;
    /// Modifiers that typing has let go of while a person holds them together with the chord: for the
    /// tap they are still down.
    uint8_t coveredModifiers = x11_mask::none;
    /// Key releases that typing has played since the chord went down and the tap has not heard of yet.
    std::map<uint8_t, int> typedReleases;

    /// The chord went down on `device`, or is not held any more.
    void setHeld(std::optional<uint16_t> device)
    {
        heldOn = device;
        coveredModifiers = x11_mask::none;
        typedReleases.clear();
    }
    /// Typing plays the release of a key.
    void noteTypedRelease(uint8_t keyCode)
    {
        if (heldOn)
            ++typedReleases[keyCode];
    }
    /// Whether a release that the tap hears of is one that typing has played.
    [[nodiscard]] bool takeTypedRelease(uint16_t device, uint32_t keyCode)
    {
        const auto noted = typedReleases.find(static_cast<uint8_t>(keyCode));
        if (device != typedOn || noted == typedReleases.end())
            return false;
        if (--noted->second == 0)
            typedReleases.erase(noted);
        return true;
    }
};

} // namespace corvandi
