#pragma once

#include "session/x11/xcb_connection.h"

#include <string>

namespace clipboard_peer {

/// How an owner behaves.
struct OwnerOptions {
    /// The form that it offers, such as "UTF8_STRING" or "image/png".
    std::string target;
    std::string data;
    /// Larger data travels in parts of this size.
    size_t partBytes = 60000;
    /// After so many parts it ends (or just stops); -1: never.
    int partsBeforeEnd = -1;
    bool hangsInsteadOfEnding = false;
};

/// Takes the clipboard, says "ready" and serves it until another program takes it. Returns an exit code.
int own(const OwnerOptions& options);

/// Writes the clipboard in the form `target` to the standard output; 1 when there is no such form.
int read(const std::string& target);

/// Writes the names of the forms that the clipboard's owner offers, one per line.
int listForms();

/// Plays a clipboard manager: says "ready", and on request takes over the clipboard's text, which it
/// then writes out behind "saved:".
int manage();

/// Waits for the next event; ends the program when the server has gone.
corvandi::XcbPtr<xcb_generic_event_t> nextEvent(const corvandi::XcbConnection& x);
/// A window to own selections with or to receive them on.
xcb_window_t createWindow(const corvandi::XcbConnection& x);
/// Has taken the selection when it returns.
void takeSelection(const corvandi::XcbConnection& x, xcb_window_t window, xcb_atom_t selection);
void replaceProperty(const corvandi::XcbConnection& x, xcb_window_t window, xcb_atom_t property,
                     xcb_atom_t type, const std::string& data);
/// Tells a requestor that its request was served (into `property`) or, with none, refused.
void answer(const corvandi::XcbConnection& x, const xcb_selection_request_event_t& request,
            xcb_atom_t property);
void say(const std::string& line);

} // namespace clipboard_peer
