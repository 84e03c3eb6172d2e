#include "app/application.h"
#include "app/display_check.h"
#include "platform/linux/instance/single_instance.h"
#include "platform/linux/log/linux_system_log.h"
#include "platform/linux/log/qt_messages.h"
#include "platform/linux/termination/termination_signals.h"

#include <QApplication>

#include <optional>

namespace {

using namespace corvandi;

/// Settings of Qt that must stand before the application object is made.
void nameApplication()
{
    QApplication::setDesktopFileName(QStringLiteral("io.corvandi.Corvandi"));
    QApplication::setOrganizationName(QStringLiteral("Corvandi"));
    QApplication::setApplicationName(QStringLiteral("Corvandi"));
    QApplication::setQuitOnLastWindowClosed(false);
}

int run(LinuxSystemLog& log, TerminationSignals& signals, int& argc, char** argv)
{
    nameApplication();
    const std::unique_ptr<Registration> qtMessages = routeQtMessages(log);
    const QApplication qtApplication(argc, argv);
    signals.watch([] { QApplication::quit(); });
    std::optional<Application> application;
    // Told by the event loop, so not before there is an application.
    SingleInstance instance(log, [&log, &application] {
        log.write(QStringLiteral("already running; started again"));
        application->launchedAgain();
    });
    if (instance.role() == InstanceRole::second) {
        log.write(QStringLiteral("already running; this second instance ends"));
        return EXIT_SUCCESS;
    }
    application.emplace(log);
    application->start();
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    // Before any thread exists: threads inherit the signal mask.
    TerminationSignals signals;
    LinuxSystemLog log;
    if (!isDisplayReachable()) {
        log.write(QStringLiteral("no graphical session: the X display \"%1\" can't be opened")
                      .arg(qEnvironmentVariable("DISPLAY")));
        return EXIT_FAILURE;
    }
    return run(log, signals, argc, argv);
}
