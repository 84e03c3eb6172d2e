#pragma once

#include "ports/window_tray.h"
#include "session/x11/xcb_connection.h"

#include <functional>
#include <memory>

namespace corvandi {

/// A tray that embeds windows, found through the selection that it owns and announced to the root window.
/// Without an X server there is never one. While nobody watches, nothing wakes this process.
///
/// Thread: main thread only.
class XEmbedTray : public WindowTray {
public:
    XEmbedTray();

    /// Costs one round trip to the X server.
    [[nodiscard]] bool isThere() const override;
    [[nodiscard]] std::unique_ptr<Registration> watch(std::function<void()> appeared) override;

private:
    class Watch;

    [[nodiscard]] bool isAnnouncement(const xcb_generic_event_t& event) const;

    XcbConnection x_;
    xcb_atom_t selection_ = XCB_ATOM_NONE;
    xcb_atom_t manager_ = XCB_ATOM_NONE;
};

} // namespace corvandi
