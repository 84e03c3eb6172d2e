#include "platform/linux/log/qt_messages.h"

#include <QtGlobal>

#include <mutex>

namespace corvandi {
namespace {

/// Qt's message handler is a plain function without a context: this is the one place where a log can
/// be found from nowhere.
struct Route {
    std::mutex mutex;
    SystemLog* log = nullptr;
};

Route& route()
{
    static Route instance;
    return instance;
}

QString severity(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("debug");
    case QtInfoMsg:
        return QStringLiteral("information");
    case QtWarningMsg:
        return QStringLiteral("warning");
    case QtCriticalMsg:
        return QStringLiteral("error");
    case QtFatalMsg:
        return QStringLiteral("fatal error");
    }
    return QStringLiteral("message");
}

void handleMessage(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtDebugMsg)
        return;
    const std::lock_guard guard(route().mutex);
    if (SystemLog* log = route().log)
        log->write(QStringLiteral("Qt %1: %2").arg(severity(type), message));
}

class QtMessageRoute : public Registration {
public:
    explicit QtMessageRoute(SystemLog& log)
    {
        setLog(&log);
        former_ = qInstallMessageHandler(handleMessage);
    }
    ~QtMessageRoute() override
    {
        qInstallMessageHandler(former_);
        setLog(nullptr);
    }

private:
    static void setLog(SystemLog* log)
    {
        const std::lock_guard guard(route().mutex);
        route().log = log;
    }

    QtMessageHandler former_ = nullptr;
};

} // namespace

std::unique_ptr<Registration> routeQtMessages(SystemLog& log)
{
    return std::make_unique<QtMessageRoute>(log);
}

} // namespace corvandi
