#include "platform/linux/x11/keyboard_devices.h"

#include "platform/linux/xcb/xcb_ptr.h"

#include <string_view>

#include <xcb/xinput.h>

namespace corvandi {
namespace {

bool isXtest(const xcb_input_xi_device_info_t& info)
{
    const std::string_view name(xcb_input_xi_device_info_name(&info),
                                static_cast<size_t>(xcb_input_xi_device_info_name_length(&info)));
    return name.find("XTEST") != std::string_view::npos;
}

} // namespace

std::vector<KeyboardDevice> slaveKeyboards(const X11Connection& connection)
{
    std::vector<KeyboardDevice> devices;
    const auto cookie = xcb_input_xi_query_device(connection.get(), XCB_INPUT_DEVICE_ALL);
    const auto reply = owned(xcb_input_xi_query_device_reply(connection.get(), cookie, nullptr));
    if (!reply)
        return devices;
    for (auto info = xcb_input_xi_query_device_infos_iterator(reply.get()); info.rem;
         xcb_input_xi_device_info_next(&info)) {
        if (info.data->type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD)
            devices.push_back({info.data->deviceid, info.data->attachment, isXtest(*info.data)});
    }
    return devices;
}

} // namespace corvandi
