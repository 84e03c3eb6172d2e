#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <cstdint>
#include <vector>

namespace corvandi {

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

private:
    const X11Connection& connection_;
    X11Chord chord_;
    std::vector<uint32_t> masks_;
    std::vector<uint16_t> devices_;
};

} // namespace corvandi
