#include "window_tray.h"

namespace corvandi::testing {
namespace {

constexpr uint16_t side = 24;
/// The program's screens are 1280 pixels wide.
constexpr int16_t left = 1200;

} // namespace

TestWindowTray::TestWindowTray()
    : window_(xcb_generate_id(x_.get()))
    , opcode_(x_.atom("_NET_SYSTEM_TRAY_OPCODE"))
{
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(x_.get())).data;
    const uint32_t values[] = {screen->white_pixel, 1, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
    xcb_create_window(x_.get(), XCB_COPY_FROM_PARENT, window_, x_.root(), left, 0, side, side, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    xcb_map_window(x_.get(), window_);
    xcb_set_selection_owner(x_.get(), window_, x_.atom("_NET_SYSTEM_TRAY_S0"), XCB_CURRENT_TIME);
    announce();
    events_.emplace(x_.fileDescriptor(), QSocketNotifier::Read);
    QObject::connect(&*events_, &QSocketNotifier::activated, &*events_, [this] { readEvents(); });
}

TestWindowTray::~TestWindowTray()
{
    if (icon_ != XCB_WINDOW_NONE)
        xcb_reparent_window(x_.get(), icon_, x_.root(), 0, 0);
    x_.flush();
}

void TestWindowTray::announce()
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = x_.root();
    message.type = x_.atom("MANAGER");
    message.data.data32[1] = x_.atom("_NET_SYSTEM_TRAY_S0");
    message.data.data32[2] = window_;
    xcb_send_event(x_.get(), 0, x_.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    x_.flush();
}

void TestWindowTray::readEvents()
{
    while (const auto event = x_.pollEvent()) {
        if (eventType(*event) == XCB_CLIENT_MESSAGE) {
            const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
            constexpr uint32_t requestDock = 0;
            if (message.type == opcode_ && message.data.data32[1] == requestDock)
                dock(message.data.data32[2]);
        } else if (eventType(*event) == XCB_DESTROY_NOTIFY) {
            icon_ = XCB_WINDOW_NONE;
        }
    }
}

void TestWindowTray::dock(xcb_window_t window)
{
    const uint32_t size[] = {side, side};
    xcb_reparent_window(x_.get(), window, window_, 0, 0);
    xcb_configure_window(x_.get(), window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
    xcb_map_window(x_.get(), window);
    x_.flush();
    icon_ = window;
}

} // namespace corvandi::testing
