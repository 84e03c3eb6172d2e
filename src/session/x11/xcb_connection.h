#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvandi {

struct FreeWithLibc {
    void operator()(void* memory) const { std::free(memory); }
};

/// A reply, event or error that xcb has allocated.
template<class T>
using XcbPtr = std::unique_ptr<T, FreeWithLibc>;

/// Takes over what an xcb call has returned (nothing, when the call failed).
template<class T>
[[nodiscard]] XcbPtr<T> owned(T* reply)
{
    return XcbPtr<T>(reply);
}

/// Waits for the reply of one request: `replyOf(connection, xcb_get_property_reply, cookie)`. Empty when the
/// request has failed.
template<class Reply, class Cookie>
[[nodiscard]] XcbPtr<Reply> replyOf(xcb_connection_t* connection,
                                    Reply* (*function)(xcb_connection_t*, Cookie, xcb_generic_error_t**),
                                    Cookie cookie)
{
    xcb_generic_error_t* error = nullptr;
    auto result = owned(function(connection, cookie, &error));
    const auto dropped = owned(error);
    return result;
}

/// The server's atom for `name`, made if need be; none when that fails.
[[nodiscard]] xcb_atom_t atomOf(xcb_connection_t* connection, std::string_view name);

/// The connection of the toolkit, whose events are the toolkit's; null on another platform than X11.
/// Thread: main thread only.
[[nodiscard]] xcb_connection_t* toolkitConnection();

/// A connection of one's own to the X server that DISPLAY names. Errors of single requests never end
/// the program: they come back as an empty reply. Without a server (or once it has gone) `isUsable` is
/// false and every reply is empty.
///
/// A reply that is waited for costs one round trip, some 50 µs, unless another client has grabbed the
/// server.
///
/// Thread: one; the owner's.
class XcbConnection {
public:
    XcbConnection();

    [[nodiscard]] bool isUsable() const { return xcb_connection_has_error(connection_.get()) == 0; }
    [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }
    [[nodiscard]] int fileDescriptor() const { return xcb_get_file_descriptor(connection_.get()); }
    /// The root window of the display's default screen; none when not usable.
    [[nodiscard]] xcb_window_t root() const { return root_; }
    /// The server's atom for `name`, made if need be; none when not usable.
    [[nodiscard]] xcb_atom_t atom(std::string_view name) const { return atomOf(get(), name); }
    /// Whether the server has the extension of this (protocol) name.
    [[nodiscard]] bool hasExtension(std::string_view name) const;
    /// Sends what is queued.
    void flush() const { xcb_flush(connection_.get()); }
    /// Returns when the server has carried out everything so far: one round trip.
    void sync() const;

    /// As `replyOf` on this connection.
    template<class Reply, class Cookie>
    [[nodiscard]] XcbPtr<Reply> reply(Reply* (*function)(xcb_connection_t*, Cookie, xcb_generic_error_t**),
                                      Cookie cookie) const
    {
        return replyOf(get(), function, cookie);
    }

    /// The next event that has arrived, without waiting. Errors of requests without reply are dropped.
    [[nodiscard]] XcbPtr<xcb_generic_event_t> pollEvent() const;

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
};

/// The type of an event, whoever sent it.
[[nodiscard]] inline uint8_t eventType(const xcb_generic_event_t& event)
{
    constexpr uint8_t sentByClient = 0x80;
    return event.response_type & static_cast<uint8_t>(~sentByClient);
}

/// A question for a window's property that is already on its way; several can be under way at once and
/// cost one round trip together. Each must be asked for its answer exactly once.
struct PropertyRequest {
    xcb_get_property_cookie_t cookie;
};

/// Asks for the first `maxBytes` (rounded up to whole words) of a property of any type.
[[nodiscard]] PropertyRequest requestProperty(const XcbConnection& x, xcb_window_t window,
                                              xcb_atom_t property, uint32_t maxBytes = 4096);

/// The bytes of a property with 8-bit items; empty when it is absent, of another format or the window
/// has gone.
[[nodiscard]] std::string textOf(const XcbConnection& x, PropertyRequest request);
/// The items of a property with 32-bit items (windows, atoms, numbers); empty as above.
[[nodiscard]] std::vector<uint32_t> wordsOf(const XcbConnection& x, PropertyRequest request);

} // namespace corvandi
