#include "system/log/linux_system_log.h"

#include <QString>
#include <QtGlobal>

#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>

#include <array>
#include <cerrno>
#include <ctime>
#include <mutex>

namespace corvandi {
namespace {

/// The month names of the protocol are English whatever the locale.
constexpr std::array<const char*, 12> months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                             "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

QByteArray timestamp()
{
    const time_t now = time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    return QString::asprintf("%s %2d %02d:%02d:%02d", months.at(static_cast<size_t>(local.tm_mon)),
                             local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec)
        .toLatin1();
}

} // namespace

void SyslogSocket::writeLine(const QByteArray& line)
{
    const QByteArray datagram = '<' + QByteArray::number(LOG_USER | LOG_NOTICE) + '>' + timestamp() +
                                " corvandi[" + QByteArray::number(getpid()) + "]: " + line;
    if (put(datagram) || errno == EAGAIN)
        return;
    connectToDaemon();
    (void)put(datagram);
}

bool SyslogSocket::put(const QByteArray& datagram) const
{
    return send(socket_.get(), datagram.constData(), static_cast<size_t>(datagram.size()),
                MSG_DONTWAIT | MSG_NOSIGNAL) >= 0;
}

void SyslogSocket::connectToDaemon()
{
    sockaddr_un address{};
    if (path_.size() >= sizeof address.sun_path)
        return;
    address.sun_family = AF_UNIX;
    path_.copy(address.sun_path, path_.size());
    socket_ = FileDescriptor(socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    // A refused connection shows in the next send.
    (void)connect(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

namespace {

/// Log daemons cut datagrams at this size or above; a pipe takes as much (and a line end) at once.
constexpr qsizetype longestLine = 2000;

bool isLineBreak(QChar character)
{
    return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

/// `text` on a single line: runs of line breaks and control characters become one space.
QString flattened(const QString& text)
{
    QString flat;
    flat.reserve(text.size());
    bool isAfterBreak = false;
    for (const QChar character : text) {
        const bool isBreak = isLineBreak(character);
        if (!isBreak)
            flat += character;
        else if (!isAfterBreak)
            flat += QLatin1Char(' ');
        isAfterBreak = isBreak;
    }
    return flat.trimmed();
}

QByteArray cut(QByteArray utf8)
{
    if (utf8.size() <= longestLine)
        return utf8;
    qsizetype end = longestLine;
    const auto isContinuation = [&](qsizetype at) { return (utf8.at(at) & 0xC0) == 0x80; };
    while (isContinuation(end))
        --end;
    utf8.truncate(end);
    return utf8 + "...";
}

} // namespace

LinuxSystemLog::LinuxSystemLog(int errorOutput, std::string daemonSocket)
    : errorOutput_(errorOutput)
    , daemon_(std::move(daemonSocket))
{
}

void LinuxSystemLog::writeLine(const QString& line)
{
    const QByteArray text = cut(flattened(line).toUtf8());
    const std::lock_guard guard(mutex_);
    daemon_.writeLine(text);
    errorOutput_.writeLine(text);
}

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
