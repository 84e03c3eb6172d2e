#pragma once

#include "platform/linux/xcb/xcb_connection.h"

#include <cstdint>
#include <optional>

namespace corvandi {

enum class OwnerChange {
    /// A program has taken the selection (or given it up).
    taken,
    /// The owner has ended, or its window has.
    lost,
};

/// Counts the changes of a selection's owner through XFixes, from events of the given connection.
///
/// Thread: main thread only.
class SelectionOwnerWatch {
public:
    SelectionOwnerWatch(const XcbConnection& x, xcb_atom_t selection);

    /// The server tells of changes; false without XFixes.
    [[nodiscard]] bool isWatching() const { return eventType_ != 0; }
    /// Counts the change that this event reports; nothing when it is another event.
    std::optional<OwnerChange> handle(const xcb_generic_event_t& event);
    /// The changes so far, of either kind.
    [[nodiscard]] int64_t count() const { return count_; }

private:
    uint8_t eventType_ = 0;
    xcb_atom_t selection_;
    int64_t count_ = 0;
};

} // namespace corvandi
