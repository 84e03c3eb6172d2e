// Shows one window until its standard input ends, and says "shown" once it is the active one.
// Options: --class NAME, --gtk-id ID, --type-desktop.

#include "platform/linux/xcb/xcb_property.h"

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
        std::puts("shown");
        std::fflush(stdout);
    });
    poll.start(std::chrono::milliseconds(10));

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    return QCoreApplication::exec();
}
