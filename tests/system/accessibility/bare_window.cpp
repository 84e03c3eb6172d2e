// A window that neither names its process nor speaks to the accessibility bus.

#include <cstring>

#include <xcb/xcb.h>

int main(int argc, char** argv)
{
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection) != 0 || argc < 2)
        return 1;
    const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_window_t window = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen.root, 0, 0, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen.root_visual, 0, nullptr);
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                        static_cast<uint32_t>(std::strlen(argv[1])), argv[1]);
    xcb_map_window(connection, window);
    xcb_flush(connection);
    while (xcb_wait_for_event(connection) != nullptr) {
    }
    return 0;
}
