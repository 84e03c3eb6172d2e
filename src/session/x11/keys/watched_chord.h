#pragma once

#include "session/x11/keys/x11_connection.h"

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace corvandi {

/// The server's eight modifier bits. The keyboard configuration that every distribution ships puts
/// Alt, NumLock, Super and AltGr where they are here.
namespace x11_mask {
inline constexpr uint8_t none = 0x00;
inline constexpr uint8_t shift = 0x01;
inline constexpr uint8_t lock = 0x02;
inline constexpr uint8_t control = 0x04;
inline constexpr uint8_t alt = 0x08;
inline constexpr uint8_t numLock = 0x10;
inline constexpr uint8_t super = 0x40;
inline constexpr uint8_t level3 = 0x80;
inline constexpr uint8_t all = 0xFF;
} // namespace x11_mask

/// What stays on after its key was struck; such a key does no harm while it is down.
inline constexpr uint8_t lockModifiers = x11_mask::lock | x11_mask::numLock;

/// The server's bits for `modifier_flags`; other flags have none.
[[nodiscard]] uint8_t x11Mask(uint64_t flags);
/// The `modifier_flags` for the server's bits; other bits have none.
[[nodiscard]] uint64_t modifierFlags(uint8_t mask);
/// The bits of the modifier key with this virtual key code; none for every other key. Both Alt keys count
/// for Alt, whatever a layout has put on the right one.
[[nodiscard]] uint8_t modifierOf(uint16_t virtualKey);
/// All masks that contain `required`: 128 for one modifier, 256 for none.
[[nodiscard]] std::vector<uint32_t> masksContaining(uint8_t required);
/// All masks of Shift, Control, Alt, Super and NumLock that do not contain `required`.
[[nodiscard]] std::vector<uint32_t> masksLacking(uint8_t required);

/// One keyboard that produces keys: a piece of hardware, or the server's own one for synthetic keys.
struct KeyboardDevice {
    uint16_t id;
    /// The master keyboard it belongs to.
    uint16_t master;
    bool isXtest;
    /// It belongs to no master at the moment: some program has it for itself.
    bool isFloating = false;
};

enum class Floating { leftOut, too };

/// All slave keyboards that are plugged in now, without or with those that float. Empty when the server has
/// gone.
[[nodiscard]] std::vector<KeyboardDevice> slaveKeyboards(const X11Connection& connection,
                                                         Floating floating = Floating::leftOut);

/// A key with the modifiers that must be held with it, in the server's terms.
struct X11Chord {
    uint8_t keyCode;
    uint8_t modifiers;
};

/// The claim on a chord: passive, asynchronous grabs on slave keyboards, for every combination of
/// modifiers that contains the required ones. Destroying it gives the chord back (one
/// round trip).
///
/// A grab on a slave comes before everything that listens to the master keyboard: window managers,
/// and core grabs whenever they were made. Being asynchronous, it can't freeze anything.
class ChordGrabs {
public:
    /// Claims nothing yet. `connection` must outlive the claim.
    ChordGrabs(const X11Connection& connection, X11Chord chord);
    ~ChordGrabs();

    ChordGrabs(const ChordGrabs&) = delete;
    ChordGrabs& operator=(const ChordGrabs&) = delete;

    enum class Outcome { everything, something, nothing };

    /// Claims the chord on all keyboards that are plugged in now; those that were claimed before stay
    /// so. Says how much of it other clients have left. One round trip.
    [[nodiscard]] Outcome claim();
    /// Claims the key also without its modifiers on the keyboards that a person types on, or gives that back.
    void claimWithoutModifiers(bool isWanted);

private:
    const X11Connection& connection_;
    X11Chord chord_;
    std::vector<uint32_t> masks_;
    std::vector<uint32_t> lesserMasks_;
    std::vector<uint16_t> devices_;
    std::vector<uint16_t> handsDevices_;
};

/// The tap, as typing knows it.
class ChordTap {
public:
    /// Deals now with what the server has told. One round trip.
    virtual void catchUp() = 0;
    /// Whether the chord's key is claimed without its modifiers as well: typing lets go of them for moments,
    /// in which the person holds them all the same.
    virtual void claimWithoutModifiers(bool isWanted) = 0;
    /// The chord's key went down on `device` while typing kept all hands off.
    virtual void pressedUnseen(uint16_t device) = 0;

protected:
    ~ChordTap() = default;
};

/// What tap and typing must know of each other, since the server can't tell a person's key from a
/// typed one.
///
/// Thread: main thread only.
struct WatchedChord {
    /// Present while the tap claims a chord.
    ChordTap* tap = nullptr;
    /// A text is being typed.
    bool isTyped = false;
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
        // While a text is typed the server's account of the modifiers is not the person's.
        coveredModifiers = isTyped && device && chord ? chord->modifiers : x11_mask::none;
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
