#include "session/x11/windows/x11_session_lock.h"

#include <xcb/shape.h>

#include <chrono>
#include <utility>
#include <vector>

namespace corvandi {
namespace {

constexpr std::chrono::milliseconds lookInterval{200};
/// Some lockers leave out the screen's outermost pixels.
constexpr int margin = 8;

xcb_window_t makeUnshownWindow(const XcbConnection& x)
{
    const xcb_window_t window = xcb_generate_id(x.get());
    xcb_create_window(x.get(), XCB_COPY_FROM_PARENT, window, x.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    return window;
}

bool covers(const xcb_get_geometry_reply_t& place, const xcb_get_geometry_reply_t& screen)
{
    return place.x <= margin && place.y <= margin && place.x + place.width >= screen.width - margin &&
           place.y + place.height >= screen.height - margin;
}

/// Nothing to see and hardly anything to click on. Toolkits have such windows, too, but beside the screen.
bool isGrabHolder(const xcb_get_window_attributes_reply_t& attributes, const xcb_get_geometry_reply_t& place)
{
    return attributes._class == XCB_WINDOW_CLASS_INPUT_ONLY && place.width == 1 && place.height == 1 &&
           place.x >= 0 && place.y >= 0;
}

bool isLockers(const xcb_get_window_attributes_reply_t& attributes, const xcb_get_geometry_reply_t& place,
               const xcb_get_geometry_reply_t& screen)
{
    return attributes.map_state == XCB_MAP_STATE_VIEWABLE && attributes.override_redirect != 0 &&
           (covers(place, screen) || isGrabHolder(attributes, place));
}

} // namespace

/// Looks from time to time, and whenever the desktop says something.
class X11SessionLock::Watch : public Registration {
public:
    Watch(X11SessionLock& lock, std::function<void()> callback)
        : lock_(lock)
        , callback_(std::move(callback))
        , wasLocked_(lock.isLocked())
        , told_(lock.told_.onChange([this] { look(); }))
        , looks_(lock.queue_.every(lookInterval, [this] { look(); }))
    {
    }

private:
    void look()
    {
        const bool isLocked = lock_.isLocked();
        if (isLocked == std::exchange(wasLocked_, isLocked))
            return;
        // It may destroy this watch.
        const auto callback = callback_;
        callback();
    }

    X11SessionLock& lock_;
    std::function<void()> callback_;
    bool wasLocked_;
    std::unique_ptr<Registration> told_;
    std::unique_ptr<Timer> looks_;
};

X11SessionLock::X11SessionLock(MainQueue& queue, SessionLock& told)
    : queue_(queue)
    , told_(told)
{
    if (!x_.isUsable())
        return;
    unshown_ = makeUnshownWindow(x_);
    hasShapes_ = x_.hasExtension("SHAPE");
    saverStatus_ = x_.atom("_SCREENSAVER_STATUS");
    blank_ = x_.atom("BLANK");
    lock_ = x_.atom("LOCK");
    windowManager_ = x_.atom("_NET_SUPPORTING_WM_CHECK");
}

bool X11SessionLock::isLocked() const
{
    return told_.isLocked() || (x_.isUsable() && isHeldByLocker());
}

std::unique_ptr<Registration> X11SessionLock::onChange(std::function<void()> callback)
{
    return std::make_unique<Watch>(*this, std::move(callback));
}

bool X11SessionLock::isHeldByLocker() const
{
    constexpr uint8_t async = XCB_GRAB_MODE_ASYNC;
    constexpr uint8_t onlyThisWindow = 0;
    constexpr uint16_t noEvents = 0;
    // A window that is not shown can't get them: the server refuses, and says first if somebody has them.
    const auto keyboard =
        xcb_grab_keyboard(x_.get(), onlyThisWindow, unshown_, XCB_CURRENT_TIME, async, async);
    const auto pointer = xcb_grab_pointer(x_.get(), onlyThisWindow, unshown_, noEvents, async, async,
                                          XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME);
    const auto status = requestProperty(x_, x_.root(), saverStatus_, sizeof(uint32_t));
    const auto keyboardAnswer = x_.reply(xcb_grab_keyboard_reply, keyboard);
    const auto pointerAnswer = x_.reply(xcb_grab_pointer_reply, pointer);
    const auto saver = wordsOf(x_, status);
    if (!keyboardAnswer || keyboardAnswer->status != XCB_GRAB_STATUS_ALREADY_GRABBED)
        return false;
    if (!saver.empty() && (saver.front() == blank_ || saver.front() == lock_))
        return true;
    return pointerAnswer && pointerAnswer->status == XCB_GRAB_STATUS_ALREADY_GRABBED && hasLockerWindow();
}

std::vector<xcb_window_t> X11SessionLock::unmanagedWindows() const
{
    const auto managerRequest = requestProperty(x_, x_.root(), windowManager_);
    const auto tree = x_.reply(xcb_query_tree_reply, xcb_query_tree(x_.get(), x_.root()));
    const auto manager = wordsOf(x_, managerRequest);
    if (!tree)
        return {};
    const auto* first = xcb_query_tree_children(tree.get());
    std::vector<xcb_window_t> windows(first, first + xcb_query_tree_children_length(tree.get()));
    // The window manager's own: the frames that it puts around other windows would look like a locker's.
    if (!manager.empty())
        std::erase_if(windows,
                      [&](xcb_window_t window) { return clientOf(window) == clientOf(manager.front()); });
    return windows;
}

bool X11SessionLock::hasLockerWindow() const
{
    struct Question {
        xcb_window_t window;
        xcb_get_window_attributes_cookie_t attributes;
        xcb_get_geometry_cookie_t place;
    };
    const auto screenRequest = xcb_get_geometry(x_.get(), x_.root());
    std::vector<Question> questions;
    for (const xcb_window_t window : unmanagedWindows())
        questions.push_back(
            {window, xcb_get_window_attributes(x_.get(), window), xcb_get_geometry(x_.get(), window)});
    const auto screen = x_.reply(xcb_get_geometry_reply, screenRequest);
    bool isFound = false;
    for (const Question& question : questions) {
        const auto attributes = x_.reply(xcb_get_window_attributes_reply, question.attributes);
        const auto place = x_.reply(xcb_get_geometry_reply, question.place);
        isFound = isFound || (screen && attributes && place && isLockers(*attributes, *place, *screen) &&
                              takesInput(question.window));
    }
    return isFound;
}

bool X11SessionLock::takesInput(xcb_window_t window) const
{
    if (!hasShapes_)
        return true;
    const auto shape = x_.reply(xcb_shape_get_rectangles_reply,
                                xcb_shape_get_rectangles(x_.get(), window, XCB_SHAPE_SK_INPUT));
    return !shape || xcb_shape_get_rectangles_rectangles_length(shape.get()) > 0;
}

uint32_t X11SessionLock::clientOf(xcb_window_t window) const
{
    return window & ~xcb_get_setup(x_.get())->resource_id_mask;
}

} // namespace corvandi
