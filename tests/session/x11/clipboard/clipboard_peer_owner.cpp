#include "clipboard_peer.h"

#include <map>
#include <unistd.h>

namespace clipboard_peer {

using namespace corvandi;

namespace {

class Owner {
public:
    explicit Owner(const OwnerOptions& options)
        : options_(options)
        , target_(x_.atom(options.target))
    {
        takeSelection(x_, createWindow(x_), x_.atom("CLIPBOARD"));
    }

    void run()
    {
        while (true) {
            const auto event = nextEvent(x_);
            if (eventType(*event) == XCB_SELECTION_CLEAR)
                return;
            if (eventType(*event) == XCB_SELECTION_REQUEST)
                serve(reinterpret_cast<const xcb_selection_request_event_t&>(*event));
            else if (eventType(*event) == XCB_PROPERTY_NOTIFY)
                goOn(reinterpret_cast<const xcb_property_notify_event_t&>(*event));
        }
    }

private:
    void serve(const xcb_selection_request_event_t& request)
    {
        if (request.target != target_) {
            answer(x_, request, XCB_ATOM_NONE);
            return;
        }
        if (options_.data.size() <= options_.partBytes)
            replaceProperty(x_, request.requestor, request.property, target_, options_.data);
        else
            beginParts(request);
        answer(x_, request, request.property);
    }

    void beginParts(const xcb_selection_request_event_t& request)
    {
        const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(x_.get(), request.requestor, XCB_CW_EVENT_MASK, &events);
        const auto size = static_cast<uint32_t>(options_.data.size());
        xcb_change_property(x_.get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                            x_.atom("INCR"), 32, 1, &size);
        offsets_[request.requestor] = 0;
    }

    void goOn(const xcb_property_notify_event_t& notice)
    {
        const auto transfer = offsets_.find(notice.window);
        if (transfer == offsets_.end() || notice.state != XCB_PROPERTY_DELETE)
            return;
        if (options_.partsBeforeEnd >= 0 && options_.partsBeforeEnd-- == 0)
            stop();
        const std::string part = options_.data.substr(transfer->second, options_.partBytes);
        replaceProperty(x_, notice.window, notice.atom, target_, part);
        transfer->second += part.size();
        if (part.empty())
            offsets_.erase(transfer);
    }

    void stop() const
    {
        x_.flush();
        if (!options_.hangsInsteadOfEnding)
            std::exit(0);
        while (true)
            pause();
    }

    OwnerOptions options_;
    XcbConnection x_;
    xcb_atom_t target_;
    std::map<xcb_window_t, size_t> offsets_;
};

} // namespace

int own(const OwnerOptions& options)
{
    Owner owner(options);
    say("ready");
    owner.run();
    return 0;
}

} // namespace clipboard_peer
