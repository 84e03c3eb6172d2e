#include "app/application.h"
#include "app/facilities.h"
#include "app/refused_session.h"
#include "session/find_window_system.h"
#include "system/log/linux_system_log.h"
#include "system/process/single_instance.h"
#include "system/process/termination_signals.h"

#include <QApplication>

#include <optional>
#include <string>
#include <vector>

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

/// The command line with the toolkit's platform added. Not by way of the environment, which the programs
/// that are started from here would inherit.
class Arguments {
public:
    Arguments(int argc, char** argv, const QString& toolkitPlatform)
        : platform_(toolkitPlatform.toStdString())
        , pointers_(argv, argv + argc)
    {
        pointers_.push_back(option_.data());
        pointers_.push_back(platform_.data());
        count_ = static_cast<int>(pointers_.size());
        pointers_.push_back(nullptr);
    }

    // It points into itself.
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    [[nodiscard]] int& count() { return count_; }
    [[nodiscard]] char** values() { return pointers_.data(); }

private:
    std::string option_ = "-platform";
    std::string platform_;
    std::vector<char*> pointers_;
    int count_ = 0;
};

int run(LinuxSystemLog& log, TerminationSignals& signals, const WindowSystem& windowSystem,
        Arguments arguments)
{
    nameApplication();
    const std::unique_ptr<Registration> qtMessages = routeQtMessages(log);
    const QApplication qtApplication(arguments.count(), arguments.values());
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
    // After the role: the first instance of this session holds both.
    const FolderClaim claim(log, storeDirectory());
    if (!claim.isGranted()) {
        log.write(QStringLiteral("another session of this user runs Corvandi; this one can't"));
        const RefusedSession refused(
            QCoreApplication::translate("Application", "Corvandi is running in another session of yours"),
            log);
        return QApplication::exec();
    }
    application.emplace(log, windowSystem);
    application->start();
    const int result = QApplication::exec();
    // Before the locks are given up: a dictation comes to its end here, and what waits is written.
    application.reset();
    return result;
}

/// Where there is a desktop, it must not look as if the program had never been started.
int runRefused(LinuxSystemLog& log, TerminationSignals& signals, const QString& words, Arguments arguments)
{
    nameApplication();
    const std::unique_ptr<Registration> qtMessages = routeQtMessages(log);
    const QApplication qtApplication(arguments.count(), arguments.values());
    signals.watch([] { QApplication::quit(); });
    const SingleInstance instance(log,
                                  [&log] { log.write(QStringLiteral("already running; started again")); });
    if (instance.role() == InstanceRole::second)
        return EXIT_SUCCESS;
    const RefusedSession refused(words, log);
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    // Before any thread exists: threads inherit the signal mask.
    TerminationSignals signals;
    LinuxSystemLog log;
    const auto found = findWindowSystem(SessionEnvironment::current());
    if (const auto* windowSystem = std::get_if<WindowSystem>(&found))
        return run(log, signals, *windowSystem, Arguments(argc, argv, windowSystem->toolkitPlatform));
    const auto& refusal = std::get<SessionRefusal>(found);
    log.write(refusal.reason);
    if (refusal.words.isEmpty())
        return EXIT_FAILURE;
    return runRefused(log, signals, refusal.words, Arguments(argc, argv, refusal.toolkitPlatform));
}
