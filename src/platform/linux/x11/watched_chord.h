#pragma once

#include "platform/linux/x11/chord_grabs.h"

#include <optional>

namespace corvandi {

/// What the tap claims at the moment, so that typing finds another way to a character that lies there:
/// the server can't tell a person's key from a typed one.
///
/// Thread: main thread only.
struct WatchedChord {
    std::optional<X11Chord> chord;
};

} // namespace corvandi
