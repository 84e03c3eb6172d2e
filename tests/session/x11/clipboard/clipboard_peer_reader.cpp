#include "clipboard_peer.h"

#include "session/x11/xcb_connection.h"

#include <cstdio>
#include <optional>

namespace clipboard_peer {

using namespace corvandi;

namespace {

constexpr uint32_t everything = 1U << 28;

/// Asks for the clipboard's content in one form: the property that it is in, or nothing when refused.
std::optional<PropertyRequest> convert(const XcbConnection& x, xcb_window_t window, const std::string& target)
{
    const xcb_atom_t property = x.atom("PEER_TRANSFER");
    xcb_convert_selection(x.get(), window, x.atom("CLIPBOARD"), x.atom(target), property, XCB_CURRENT_TIME);
    while (true) {
        const auto event = nextEvent(x);
        if (eventType(*event) != XCB_SELECTION_NOTIFY)
            continue;
        const auto& notice = reinterpret_cast<const xcb_selection_notify_event_t&>(*event);
        if (notice.property == XCB_ATOM_NONE)
            return std::nullopt;
        return requestProperty(x, window, property, everything);
    }
}

std::optional<std::string> fetch(const XcbConnection& x, xcb_window_t window, const std::string& target)
{
    const auto property = convert(x, window, target);
    return property ? std::optional(textOf(x, *property)) : std::nullopt;
}

std::string nameOf(const XcbConnection& x, xcb_atom_t atom)
{
    const auto name = x.reply(xcb_get_atom_name_reply, xcb_get_atom_name(x.get(), atom));
    if (!name)
        return {};
    return {xcb_get_atom_name_name(name.get()),
            static_cast<size_t>(xcb_get_atom_name_name_length(name.get()))};
}

} // namespace

int read(const std::string& target)
{
    const XcbConnection x;
    const auto content = fetch(x, createWindow(x), target);
    if (!content)
        return 1;
    std::fwrite(content->data(), 1, content->size(), stdout);
    return 0;
}

int listForms()
{
    const XcbConnection x;
    const auto property = convert(x, createWindow(x), "TARGETS");
    if (!property)
        return 1;
    for (const uint32_t atom : wordsOf(x, *property))
        say(nameOf(x, atom));
    return 0;
}

int manage()
{
    const XcbConnection x;
    const xcb_window_t window = createWindow(x);
    takeSelection(x, window, x.atom("CLIPBOARD_MANAGER"));
    say("ready");
    while (true) {
        const auto event = nextEvent(x);
        if (eventType(*event) != XCB_SELECTION_REQUEST)
            continue;
        const auto& request = reinterpret_cast<const xcb_selection_request_event_t&>(*event);
        if (request.target != x.atom("SAVE_TARGETS")) {
            answer(x, request, XCB_ATOM_NONE);
            continue;
        }
        say("saved:" + fetch(x, window, "UTF8_STRING").value_or("(no text)"));
        answer(x, request, request.property);
    }
}

} // namespace clipboard_peer
