#include "session/x11/windows/window_reader.h"

#include "session/x11/xcb_connection.h"

#include <QSysInfo>

#include <algorithm>

namespace corvandi {
namespace {

/// Client identifiers came with version 1.2.
bool negotiateXRes(const XcbConnection& x)
{
    constexpr uint8_t major = 1;
    constexpr uint8_t minor = 2;
    if (!x.hasExtension("X-Resource"))
        return false;
    const auto version = x.reply(xcb_res_query_version_reply, xcb_res_query_version(x.get(), major, minor));
    return version && (version->server_major > major || version->server_minor >= minor);
}

xcb_res_query_client_ids_cookie_t askForProcess(const XcbConnection& x, xcb_window_t window)
{
    const xcb_res_client_id_spec_t client{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    return xcb_res_query_client_ids(x.get(), 1, &client);
}

std::optional<pid_t> processKnownToServer(const XcbConnection& x, xcb_res_query_client_ids_cookie_t cookie)
{
    const auto reply = x.reply(xcb_res_query_client_ids_reply, cookie);
    if (!reply)
        return std::nullopt;
    auto ids = xcb_res_query_client_ids_ids_iterator(reply.get());
    for (; ids.rem > 0; xcb_res_client_id_value_next(&ids)) {
        const bool isProcess = (ids.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0;
        if (isProcess && xcb_res_client_id_value_value_length(ids.data) > 0)
            return static_cast<pid_t>(*xcb_res_client_id_value_value(ids.data));
    }
    return std::nullopt;
}

/// The process number that a window gives means something only on the machine that it gives.
std::optional<pid_t> processBySelfReport(const std::vector<uint32_t>& pid, const std::string& machine)
{
    const bool isLocal = machine.empty() || QString::fromStdString(machine) == QSysInfo::machineHostName();
    if (pid.empty() || !isLocal)
        return std::nullopt;
    return static_cast<pid_t>(pid.front());
}

/// The second of two strings that each end with a zero byte.
QString classOf(const std::string& wmClass)
{
    const auto end = wmClass.find('\0');
    return end == std::string::npos ? QString() : QString::fromLatin1(wmClass.c_str() + end + 1);
}

bool contains(const std::vector<uint32_t>& atoms, xcb_atom_t atom)
{
    return std::find(atoms.begin(), atoms.end(), atom) != atoms.end();
}

} // namespace

WindowReader::WindowReader(const XcbConnection& x)
    : x_(x)
    , hasXRes_(negotiateXRes(x))
    , gtkApplicationId_(x.atom("_GTK_APPLICATION_ID"))
    , netWmPid_(x.atom("_NET_WM_PID"))
    , netWmWindowType_(x.atom("_NET_WM_WINDOW_TYPE"))
    , netWmWindowTypeDesktop_(x.atom("_NET_WM_WINDOW_TYPE_DESKTOP"))
    , typesOfParts_{netWmWindowTypeDesktop_, x.atom("_NET_WM_WINDOW_TYPE_DOCK"),
                    x.atom("_NET_WM_WINDOW_TYPE_UTILITY"), x.atom("_NET_WM_WINDOW_TYPE_SPLASH")}
    , netWmState_(x.atom("_NET_WM_STATE"))
    , netWmStateSkipTaskbar_(x.atom("_NET_WM_STATE_SKIP_TASKBAR"))
{
}

WindowQuestions WindowReader::ask(xcb_window_t window) const
{
    return {
        .gtkId = requestProperty(x_, window, gtkApplicationId_),
        .windowClass = requestProperty(x_, window, XCB_ATOM_WM_CLASS),
        .types = requestProperty(x_, window, netWmWindowType_),
        .states = requestProperty(x_, window, netWmState_),
        .pid = requestProperty(x_, window, netWmPid_),
        .machine = requestProperty(x_, window, XCB_ATOM_WM_CLIENT_MACHINE),
        .process = hasXRes_ ? std::optional(askForProcess(x_, window)) : std::nullopt,
        // Asked last: if the window is still there now, it was there for all of the above. Its number
        // alone would still lead to the process.
        .existence = xcb_get_geometry(x_.get(), window),
    };
}

std::optional<FrontWindow> WindowReader::answer(const WindowQuestions& questions) const
{
    FrontWindow window;
    window.gtkApplicationId = QString::fromStdString(textOf(x_, questions.gtkId));
    window.windowClass = classOf(textOf(x_, questions.windowClass));
    const auto types = wordsOf(x_, questions.types);
    window.isDesktop = contains(types, netWmWindowTypeDesktop_);
    window.isRegular = isRegular(types, wordsOf(x_, questions.states));
    const auto pid = wordsOf(x_, questions.pid);
    const auto selfReported = processBySelfReport(pid, textOf(x_, questions.machine));
    if (questions.process)
        window.process = processKnownToServer(x_, *questions.process);
    if (!window.process)
        window.process = selfReported;
    if (!x_.reply(xcb_get_geometry_reply, questions.existence))
        return std::nullopt;
    return window;
}

bool WindowReader::isRegular(const std::vector<uint32_t>& types, const std::vector<uint32_t>& states) const
{
    const bool isPart = std::any_of(typesOfParts_.begin(), typesOfParts_.end(),
                                    [&](xcb_atom_t type) { return contains(types, type); });
    return !isPart && !contains(states, netWmStateSkipTaskbar_);
}

FrontWindowReader::FrontWindowReader(const XcbConnection& x)
    : x_(x)
    , windows_(x)
    , netActiveWindow_(x.atom("_NET_ACTIVE_WINDOW"))
    , netSupportingWmCheck_(x.atom("_NET_SUPPORTING_WM_CHECK"))
{
}

xcb_window_t FrontWindowReader::activeWindow() const
{
    const PropertyRequest active = requestProperty(x_, x_.root(), netActiveWindow_);
    const PropertyRequest manager = requestProperty(x_, x_.root(), netSupportingWmCheck_);
    const auto windows = wordsOf(x_, active);
    const bool isManaged = !wordsOf(x_, manager).empty();
    if (!windows.empty())
        return windows.front();
    return isManaged ? static_cast<xcb_window_t>(XCB_WINDOW_NONE)
                     : applicationWindowAround(windowWithFocus());
}

xcb_window_t FrontWindowReader::windowWithFocus() const
{
    const auto focus = x_.reply(xcb_get_input_focus_reply, xcb_get_input_focus(x_.get()));
    if (!focus || focus->focus != XCB_INPUT_FOCUS_POINTER_ROOT)
        return focus ? focus->focus : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
    // Keys go to the window under the pointer.
    const auto pointer = x_.reply(xcb_query_pointer_reply, xcb_query_pointer(x_.get(), x_.root()));
    return pointer ? pointer->child : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

/// The innermost window around that is an application's own, which the class tells; toolkits give the focus
/// to small windows inside it. Without a class, the outermost.
xcb_window_t FrontWindowReader::applicationWindowAround(xcb_window_t window) const
{
    while (window != XCB_WINDOW_NONE && window != x_.root()) {
        const PropertyRequest name = requestProperty(x_, window, XCB_ATOM_WM_CLASS);
        const auto tree = x_.reply(xcb_query_tree_reply, xcb_query_tree(x_.get(), window));
        if (!textOf(x_, name).empty() || !tree || tree->parent == x_.root())
            return window;
        window = tree->parent;
    }
    return XCB_WINDOW_NONE;
}

std::optional<FrontWindow> FrontWindowReader::read() const
{
    const xcb_window_t window = activeWindow();
    if (window == XCB_WINDOW_NONE)
        return std::nullopt;
    return windows_.answer(windows_.ask(window));
}

} // namespace corvandi
