// Puts its argument on the clipboard and ends through the event loop.

#include "session/x11/clipboard/x11_pasteboard.h"
#include "system/process/qt_main_queue.h"

#include <QGuiApplication>

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    corvandi::QtMainQueue queue;
    corvandi::X11Pasteboard pasteboard(queue);
    pasteboard.clearContents();
    const bool isSet =
        pasteboard.setString(QString::fromLocal8Bit(argv[1]), corvandi::pasteboard_type::string);
    queue.async([isSet] { QCoreApplication::exit(isSet ? 0 : 1); });
    return QCoreApplication::exec();
}
