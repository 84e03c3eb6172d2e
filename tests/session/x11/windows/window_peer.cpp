// Shows one window until its standard input ends, and says "shown" once it is the active one.
// Options: --class NAME, --gtk-id ID, --type-desktop, --type NAME (such as DOCK), --skip-taskbar.

#include "session/x11/xcb_connection.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QSocketNotifier>
#include <QTimer>
#include <QWidget>

#include <unistd.h>

#include <cstdio>

namespace {

using corvandi::XcbConnection;

void setText(const XcbConnection& x, xcb_window_t window, xcb_atom_t property, const QByteArray& value)
{
    xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_STRING, 8,
                        static_cast<uint32_t>(value.size()), value.constData());
}

void setAtom(const XcbConnection& x, xcb_window_t window, xcb_atom_t property, xcb_atom_t value)
{
    xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_ATOM, 32, 1, &value);
}

void applyOptions(const XcbConnection& x, xcb_window_t window, const QCommandLineParser& options)
{
    if (options.isSet(QStringLiteral("class"))) {
        const QByteArray name = options.value(QStringLiteral("class")).toLatin1();
        setText(x, window, XCB_ATOM_WM_CLASS, "instance" + QByteArray(1, '\0') + name + QByteArray(1, '\0'));
    }
    if (options.isSet(QStringLiteral("gtk-id")))
        setText(x, window, x.atom("_GTK_APPLICATION_ID"), options.value(QStringLiteral("gtk-id")).toUtf8());
    if (options.isSet(QStringLiteral("type-desktop")))
        setAtom(x, window, x.atom("_NET_WM_WINDOW_TYPE"), x.atom("_NET_WM_WINDOW_TYPE_DESKTOP"));
    if (options.isSet(QStringLiteral("type"))) {
        const std::string type = options.value(QStringLiteral("type")).toStdString();
        setAtom(x, window, x.atom("_NET_WM_WINDOW_TYPE"), x.atom("_NET_WM_WINDOW_TYPE_" + type));
    }
    x.flush();
}

/// Asks the window manager to keep the window out of lists of windows.
void skipTaskbar(const XcbConnection& x, xcb_window_t window)
{
    constexpr uint32_t addState = 1;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = x.atom("_NET_WM_STATE");
    message.data.data32[0] = addState;
    message.data.data32[1] = x.atom("_NET_WM_STATE_SKIP_TASKBAR");
    xcb_send_event(x.get(), 0, x.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message)); // NOLINT: the protocol's own way
    x.flush();
}

bool isActive(const XcbConnection& x, xcb_window_t window)
{
    const auto active = wordsOf(x, requestProperty(x, x.root(), x.atom("_NET_ACTIVE_WINDOW")));
    return !active.empty() && active.front() == window;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QCommandLineParser options;
    options.addOption({QStringLiteral("class"), {}, QStringLiteral("name")});
    options.addOption({QStringLiteral("gtk-id"), {}, QStringLiteral("id")});
    options.addOption({QStringLiteral("type-desktop"), {}});
    options.addOption({QStringLiteral("type"), {}, QStringLiteral("name")});
    options.addOption({QStringLiteral("skip-taskbar"), {}});
    options.process(application);

    const XcbConnection x;
    QWidget widget;
    widget.resize(300, 200);
    const auto window = static_cast<xcb_window_t>(widget.winId());
    widget.show();
    applyOptions(x, window, options);

    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        // The window manager does not make a desktop window the active one by itself.
        if (options.isSet(QStringLiteral("type-desktop"))) {
            xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, x.root(), x.atom("_NET_ACTIVE_WINDOW"),
                                XCB_ATOM_WINDOW, 32, 1, &window);
        }
        if (!isActive(x, window))
            return;
        poll.stop();
        if (options.isSet(QStringLiteral("skip-taskbar")))
            skipTaskbar(x, window);
        std::puts("shown");
        std::fflush(stdout);
    });
    poll.start(std::chrono::milliseconds(10));

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    return QCoreApplication::exec();
}
