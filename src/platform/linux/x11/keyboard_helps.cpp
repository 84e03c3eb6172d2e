#include "platform/linux/x11/keyboard_helps.h"

#include "platform/linux/x11/xkb_protocol.h"
#include "platform/linux/xcb/xcb_ptr.h"

#include <array>

namespace corvandi {
namespace {

constexpr uint32_t filters = XCB_XKB_BOOL_CTRL_SLOW_KEYS | XCB_XKB_BOOL_CTRL_BOUNCE_KEYS;
constexpr uint16_t stickyOptions = XCB_XKB_AX_OPTION_TWO_KEYS | XCB_XKB_AX_OPTION_LATCH_TO_LOCK;

} // namespace

std::optional<KeyboardHelps> readHelps(const X11Connection& connection)
{
    const auto cookie = xcb_xkb_get_controls(connection.get(), XCB_XKB_ID_USE_CORE_KBD);
    const auto controls = owned(xcb_xkb_get_controls_reply(connection.get(), cookie, nullptr));
    if (!controls)
        return std::nullopt;
    return KeyboardHelps{controls->enabledControls & filters,
                         static_cast<uint16_t>(controls->accessXOption & stickyOptions)};
}

KeyboardHelps harmless(KeyboardHelps helps)
{
    helps.filters = 0;
    helps.stickyOptions = static_cast<uint16_t>(helps.stickyOptions & ~XCB_XKB_AX_OPTION_TWO_KEYS);
    return helps;
}

void setHelps(const X11Connection& connection, const KeyboardHelps& helps)
{
    // The other values are not looked at.
    constexpr std::array<uint8_t, sizeof(xcb_xkb_get_controls_reply_t::perKeyRepeat)> noRepeats{};
    constexpr uint32_t enabled = XCB_XKB_CONTROL_CONTROLS_ENABLED;
    constexpr uint32_t options = XCB_XKB_BOOL_CTRL_STICKY_KEYS;
    xcb_xkb_set_controls(connection.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                         helps.stickyOptions, filters, helps.filters, enabled | options, 0, 0, 0, 0, 0, 0, 0,
                         0, 0, 0, 0, 0, 0, 0, noRepeats.data());
}

} // namespace corvandi
