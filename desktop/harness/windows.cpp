#include "harness/windows.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <cstring>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace corvandi::harness {
namespace {

struct FreeX {
    void operator()(void* data) const { ::XFree(data); }
};

struct Property {
    std::unique_ptr<unsigned char, FreeX> data;
    size_t count = 0;

    [[nodiscard]] std::string text() const
    {
        return data ? std::string(reinterpret_cast<const char*>(data.get()), count) : std::string();
    }
    /// Xlib hands 32-bit values out as longs.
    [[nodiscard]] std::vector<unsigned long> numbers() const
    {
        std::vector<unsigned long> values(count);
        if (count > 0)
            std::memcpy(values.data(), data.get(), count * sizeof(unsigned long));
        return values;
    }
    [[nodiscard]] std::optional<unsigned long> number() const
    {
        const std::vector<unsigned long> all = numbers();
        return all.empty() ? std::nullopt : std::optional(all.front());
    }
};

Property propertyOf(Display* display, Window window, const char* name)
{
    constexpr long longest = 1024;
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* data = nullptr;
    ::XGetWindowProperty(display, window, ::XInternAtom(display, name, False), 0, longest, False,
                         AnyPropertyType, &type, &format, &count, &rest, &data);
    return {std::unique_ptr<unsigned char, FreeX>(data), count};
}

std::string titleOf(Display* display, Window window)
{
    const std::string title = propertyOf(display, window, "_NET_WM_NAME").text();
    return title.empty() ? propertyOf(display, window, "WM_NAME").text() : title;
}

/// The window and everything below it, down to the clients inside a window manager's frames.
bool anyWindow(Display* display, Window window, int depth, const std::function<bool(Window)>& matches)
{
    if (matches(window))
        return true;
    Window root = None;
    Window parent = None;
    Window* list = nullptr;
    unsigned count = 0;
    if (depth == 0 || ::XQueryTree(display, window, &root, &parent, &list, &count) == 0)
        return false;
    const std::unique_ptr<Window, FreeX> children(list);
    for (const Window child : std::span(list, count)) {
        if (anyWindow(display, child, depth - 1, matches))
            return true;
    }
    return false;
}

bool isViewable(Display* display, Window window)
{
    XWindowAttributes attributes{};
    return ::XGetWindowAttributes(display, window, &attributes) != 0 && attributes.map_state == IsViewable &&
           attributes.c_class == InputOutput;
}

/// Asks again whenever something changes on the screen.
bool waitFor(const XDisplay& display, Clock::time_point deadline, const std::function<bool()>& condition)
{
    while (!condition()) {
        if (!display.waitForEvent(deadline))
            return condition();
        XEvent event;
        while (::XPending(display.get()) > 0)
            ::XNextEvent(display.get(), &event);
    }
    return true;
}

} // namespace

Windows::Windows()
{
    // A window may vanish between being listed and being asked.
    ::XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    ::XSelectInput(display_.get(), DefaultRootWindow(display_.get()),
                   PropertyChangeMask | SubstructureNotifyMask);
}

bool Windows::waitUntilActive(const std::string& title, Clock::time_point deadline) const
{
    return waitFor(display_, deadline, [&] { return activeTitle() == title; });
}

std::string Windows::activeTitle() const
{
    const Window root = DefaultRootWindow(display_.get());
    const auto active = propertyOf(display_.get(), root, "_NET_ACTIVE_WINDOW").number();
    return active ? titleOf(display_.get(), *active) : std::string();
}

std::optional<Area> Windows::activeArea() const
{
    Display* display = display_.get();
    const Window root = DefaultRootWindow(display);
    const auto active = propertyOf(display, root, "_NET_ACTIVE_WINDOW").number();
    XWindowAttributes attributes{};
    if (!active || ::XGetWindowAttributes(display, *active, &attributes) == 0)
        return std::nullopt;
    Area area{.x = 0, .y = 0, .width = attributes.width, .height = attributes.height};
    Window child = None;
    ::XTranslateCoordinates(display, *active, root, 0, 0, &area.x, &area.y, &child);
    return area;
}

bool Windows::waitUntilOpen(const std::string& title, Clock::time_point deadline) const
{
    return waitFor(display_, deadline, [&] { return isOpen(title); });
}

bool Windows::waitUntilClosed(const std::string& title, Clock::time_point deadline) const
{
    return waitFor(display_, deadline, [&] { return !isOpen(title); });
}

bool Windows::isOpen(const std::string& title) const
{
    Display* display = display_.get();
    for (const unsigned long window :
         propertyOf(display, DefaultRootWindow(display), "_NET_CLIENT_LIST").numbers()) {
        if (titleOf(display, window) == title)
            return true;
    }
    return false;
}

bool Windows::waitUntilShown(pid_t process, Clock::time_point deadline) const
{
    return waitFor(display_, deadline, [&] { return isShown(process); });
}

bool Windows::waitUntilHidden(pid_t process, Clock::time_point deadline) const
{
    return waitFor(display_, deadline, [&] { return !isShown(process); });
}

bool Windows::isShown(pid_t process) const
{
    constexpr int depthOfClients = 3;
    Display* display = display_.get();
    return anyWindow(display, DefaultRootWindow(display), depthOfClients, [display, process](Window window) {
        return propertyOf(display, window, "_NET_WM_PID").number() == static_cast<unsigned long>(process) &&
               isViewable(display, window);
    });
}

} // namespace corvandi::harness
