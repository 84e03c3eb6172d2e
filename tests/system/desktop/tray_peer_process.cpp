#include "tray_peer_process.h"

#include "support/event_loop.h"

#include <stdexcept>

namespace corvandi::testing {

QString run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(30000) || process.exitCode() != 0)
        throw std::runtime_error(program.toStdString() +
                                 " failed: " + process.readAllStandardError().toStdString());
    return QString::fromUtf8(process.readAllStandardOutput());
}

QString desktop(const QStringList& arguments)
{
    return run(QStringLiteral(DESKTOP_COMMAND), arguments);
}

QStringList openWindows(const QString& program)
{
    QProcess search;
    search.start(QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                             QStringLiteral("--class"), program});
    search.waitForFinished();
    return QString::fromUtf8(search.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void takeScreenshot(const QString& name)
{
    desktop({QStringLiteral("shot"), QStringLiteral(SCREENSHOTS "/") + name});
}

TrayPeer::TrayPeer(const QStringList& environment)
{
    process_.setProcessChannelMode(QProcess::MergedChannels);
    process_.setProcessEnvironment([&] {
        QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
        for (const QString& variable : environment)
            all.insert(variable.section(QLatin1Char('='), 0, 0), variable.section(QLatin1Char('='), 1));
        return all;
    }());
    QObject::connect(&process_, &QProcess::readyRead, &process_, [this] { output_ += process_.readAll(); });
    process_.start(QStringLiteral(TRAY_PEER), QStringList());
    if (!hasSaid("ready"))
        throw std::runtime_error("the program with the icon does not start: " + output());
}

TrayPeer::~TrayPeer()
{
    process_.closeWriteChannel();
    if (!process_.waitForFinished(5000))
        process_.kill();
}

void TrayPeer::command(char letter)
{
    output_.clear();
    process_.write(&letter, 1);
    if (!hasSaid(std::string("did ") + letter))
        throw std::runtime_error("the program with the icon does not obey: " + output());
}

bool TrayPeer::hasSaid(const std::string& line, std::chrono::milliseconds limit)
{
    return waitUntil([&] { return output_.contains(QByteArray::fromStdString(line + "\n")); }, limit);
}

} // namespace corvandi::testing
