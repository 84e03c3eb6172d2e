#pragma once

#include "platform/linux/xcb/xcb_connection.h"

#include <QSocketNotifier>

#include <functional>
#include <optional>

namespace corvandi {

/// Watches for a tray of the older kind, a window that embeds the windows of others. Without an X
/// server there is never one.
///
/// Thread: main thread only.
class XEmbedTray {
public:
    /// `appeared` runs on the main thread each time that such a tray starts.
    explicit XEmbedTray(std::function<void()> appeared);

    /// Costs one round trip to the X server.
    [[nodiscard]] bool isThere() const;

private:
    void readEvents();
    [[nodiscard]] bool isAnnouncement(const xcb_generic_event_t& event) const;

    std::function<void()> appeared_;
    XcbConnection x_;
    xcb_atom_t selection_ = XCB_ATOM_NONE;
    xcb_atom_t manager_ = XCB_ATOM_NONE;
    std::optional<QSocketNotifier> events_;
};

} // namespace corvandi
