#include "session/x11/keys/input_extensions.h"

#include "session/x11/xcb_connection.h"

#include <xcb/xinput.h>

#include <utility>

namespace corvandi {
namespace {

bool hasXInput(const XcbConnection& x)
{
    constexpr std::pair<uint16_t, uint16_t> needed{2, 2};
    if (!x.hasExtension("XInputExtension"))
        return false;
    const auto version = x.reply(xcb_input_xi_query_version_reply,
                                 xcb_input_xi_query_version(x.get(), needed.first, needed.second));
    return version && std::pair(version->major_version, version->minor_version) >= needed;
}

} // namespace

bool hasInputExtensions()
{
    const XcbConnection x;
    return x.isUsable() && hasXInput(x) && x.hasExtension("XKEYBOARD") && x.hasExtension("XTEST");
}

} // namespace corvandi
