#include "clipboard_peer.h"

#include <cstdio>
#include <vector>

namespace clipboard_peer {

using namespace corvandi;

XcbPtr<xcb_generic_event_t> nextEvent(const XcbConnection& x)
{
    x.flush();
    while (true) {
        XcbPtr<xcb_generic_event_t> event(xcb_wait_for_event(x.get()));
        if (!event)
            std::exit(3);
        if (event->response_type != 0)
            return event;
    }
}

xcb_window_t createWindow(const XcbConnection& x)
{
    const xcb_window_t window = xcb_generate_id(x.get());
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(x.get(), XCB_COPY_FROM_PARENT, window, x.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    return window;
}

void takeSelection(const XcbConnection& x, xcb_window_t window, xcb_atom_t selection)
{
    xcb_set_selection_owner(x.get(), window, selection, XCB_CURRENT_TIME);
    // The answer to any later question means that this was carried out.
    (void)x.reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(x.get(), selection));
}

void replaceProperty(const XcbConnection& x, xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                     const std::string& data)
{
    xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, window, property, type, 8,
                        static_cast<uint32_t>(data.size()), data.data());
}

void answer(const XcbConnection& x, const xcb_selection_request_event_t& request, xcb_atom_t property)
{
    xcb_selection_notify_event_t notice{};
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.time = request.time;
    notice.requestor = request.requestor;
    notice.selection = request.selection;
    notice.target = request.target;
    notice.property = property;
    xcb_send_event(x.get(), 0, request.requestor, 0, reinterpret_cast<const char*>(&notice));
}

void say(const std::string& line)
{
    std::puts(line.c_str());
    std::fflush(stdout);
}

} // namespace clipboard_peer

// own <target> <text> | own-many <repetitions> <text> | own-whole <repetitions> <text> | end-after <parts>
// <text> | hang-after <parts> <text> | read <target> | forms | manage
int main(int argc, char** argv)
{
    using namespace clipboard_peer;
    const std::vector<std::string> words(argv + 1, argv + argc);
    const std::string& verb = words.at(0);
    if (verb == "read")
        return read(words.at(1));
    if (verb == "forms")
        return listForms();
    if (verb == "manage")
        return manage();

    OwnerOptions options{"UTF8_STRING", words.back()};
    if (verb == "own")
        options.target = words.at(1);
    if (verb == "own-whole")
        options.partBytes = size_t{1} << 23;
    if (verb == "own-many" || verb == "own-whole") {
        std::string repeated;
        for (int i = 0; i < std::stoi(words.at(1)); ++i)
            repeated += options.data;
        options.data = repeated;
    }
    if (verb == "end-after" || verb == "hang-after") {
        options.partsBeforeEnd = std::stoi(words.at(1));
        options.partBytes = 10;
        options.hangsInsteadOfEnding = verb == "hang-after";
    }
    return own(options);
}
