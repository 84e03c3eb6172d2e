#include "platform/linux/x11/free_keys_watch.h"

#include "platform/linux/x11/keyboard_state.h"
#include "platform/linux/x11/modifier_masks.h"
#include "platform/linux/x11/xkb_protocol.h"

#include <utility>

namespace corvandi {
namespace {

constexpr bool areFree(uint8_t heldModifiers)
{
    return (heldModifiers & ~lockModifiers) == 0;
}

void wantChanges(const X11Connection& connection, uint16_t parts)
{
    xcb_xkb_select_events_details_t details{};
    details.affectState = XCB_XKB_STATE_PART_MODIFIER_BASE;
    details.stateDetails = parts;
    xcb_xkb_select_events_aux(connection.get(), XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0,
                              0, 0, 0, &details);
}

} // namespace

/// Keeps the callback; the watch forgets it when this goes.
class FreeKeysWatch::Waiter : public Registration {
public:
    explicit Waiter(std::function<void()> work)
        : callback(std::make_shared<std::function<void()>>(std::move(work)))
    {
    }

    const std::shared_ptr<std::function<void()>> callback;
};

std::unique_ptr<Registration> FreeKeysWatch::add(std::function<void()> callback)
{
    auto waiter = std::make_unique<Waiter>(std::move(callback));
    // Asked for before the state is read, so that no release is missed in between.
    wantChanges(connection_, XCB_XKB_STATE_PART_MODIFIER_BASE);
    const auto state = readState(connection_);
    waiting_.push_back(waiter->callback);
    if (!state || areFree(state->held))
        report();
    return waiter;
}

void FreeKeysWatch::handle(const xcb_generic_event_t& event)
{
    if ((event.response_type & 0x7F) != connection_.xkbFirstEvent())
        return;
    const auto& state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
    if (state.xkbType == XCB_XKB_STATE_NOTIFY && areFree(state.baseMods))
        report();
}

void FreeKeysWatch::report()
{
    wantChanges(connection_, 0);
    connection_.flush();
    for (const auto& waiter : std::exchange(waiting_, {})) {
        // One callback may take back another one's registration.
        if (const auto callback = waiter.lock())
            (*callback)();
    }
}

} // namespace corvandi
