#pragma once

#include "ports/session_lock.h"
#include "session/x11/xcb_connection.h"

#include <functional>
#include <memory>
#include <vector>

namespace corvandi {

/// Whether an X session is locked: the desktop says so, or a locker that tells nobody is seen on the screen.
///
/// Such a locker holds keyboard and pointer, and has a window of which the window manager knows nothing:
/// one that covers the screen (i3lock, slock, xsecurelock), or one that shows nothing and is there only to
/// hold them (xtrlock). Of xscreensaver its note on the root window counts while it holds the keyboard, for a
/// killed one leaves its note behind. Menus hold keyboard and pointer, but cover nothing; full-screen videos
/// and games have windows that are managed, and overlays let input through. What can't be told from a locker
/// is a program that does all that a locker does, such as games from before there were full-screen windows
/// of the window manager: into those nobody could dictate either.
///
/// Nothing is taken from anybody by asking: the question who holds the keyboard is an attempt to take it
/// that can only fail. One round trip to the X server, three more while somebody holds keyboard and pointer.
/// As long as a registration lives the screen is looked at five times a second. Without an X server only the
/// desktop's word counts.
///
/// Thread: main thread only.
class X11SessionLock : public SessionLock {
public:
    /// `told` is what the desktop says. Both outlive it.
    X11SessionLock(MainQueue& queue, SessionLock& told);

    [[nodiscard]] bool isLocked() const override;
    [[nodiscard]] std::unique_ptr<Registration> onChange(std::function<void()> callback) override;

private:
    class Watch;

    [[nodiscard]] bool isHeldByLocker() const;
    [[nodiscard]] bool hasLockerWindow() const;
    /// The top-level windows that don't belong to the window manager.
    [[nodiscard]] std::vector<xcb_window_t> unmanagedWindows() const;
    [[nodiscard]] bool takesInput(xcb_window_t window) const;
    [[nodiscard]] uint32_t clientOf(xcb_window_t window) const;

    MainQueue& queue_;
    SessionLock& told_;
    XcbConnection x_;
    /// Never shown.
    xcb_window_t unshown_ = XCB_WINDOW_NONE;
    bool hasShapes_ = false;
    xcb_atom_t saverStatus_ = XCB_ATOM_NONE;
    xcb_atom_t blank_ = XCB_ATOM_NONE;
    xcb_atom_t lock_ = XCB_ATOM_NONE;
    xcb_atom_t windowManager_ = XCB_ATOM_NONE;
};

} // namespace corvandi
