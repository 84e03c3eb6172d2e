#pragma once

#include <QProcess>
#include <QStringList>

namespace corvandi::testing {

/// Has the desktop in which the test runs do something; true when that worked.
inline bool desktop(const QStringList& arguments)
{
    return QProcess::execute(QStringLiteral(CORVANDI_DESKTOP_SCRIPT), arguments) == 0;
}

/// Has the sound server's own tool do something; true when that worked.
inline bool pactl(const QStringList& arguments)
{
    return QProcess::execute(QStringLiteral("pactl"), arguments) == 0;
}

inline QString outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// Sends a signal to all processes of the sound server.
inline void signalSoundServer(const QString& signal)
{
    const QString pids =
        outputOf(QStringLiteral(CORVANDI_DESKTOP_SCRIPT), {QStringLiteral("pid"), QStringLiteral("sound")});
    QStringList arguments{QStringLiteral("-") + signal};
    QProcess::execute(QStringLiteral("kill"), arguments + pids.split(QLatin1Char('\n'), Qt::SkipEmptyParts));
}

/// A sound server that a test has ended, and that comes back at the latest with the test's end.
class EndedSoundServer {
public:
    EndedSoundServer() { desktop({QStringLiteral("end"), QStringLiteral("sound")}); }
    ~EndedSoundServer() { bringBack(); }
    EndedSoundServer(const EndedSoundServer&) = delete;
    EndedSoundServer& operator=(const EndedSoundServer&) = delete;

    void bringBack()
    {
        if (std::exchange(isEnded_, false))
            desktop({QStringLiteral("restart"), QStringLiteral("sound")});
    }

private:
    bool isEnded_ = true;
};

/// A sound server that hangs for as long as this lives.
class HungSoundServer {
public:
    HungSoundServer() { signalSoundServer(QStringLiteral("STOP")); }
    ~HungSoundServer() { signalSoundServer(QStringLiteral("CONT")); }
    HungSoundServer(const HungSoundServer&) = delete;
    HungSoundServer& operator=(const HungSoundServer&) = delete;
};

/// A microphone that is unplugged for as long as this lives.
class UnpluggedMicrophone {
public:
    UnpluggedMicrophone() { desktop({QStringLiteral("unplug")}); }
    ~UnpluggedMicrophone() { plugIn(); }
    UnpluggedMicrophone(const UnpluggedMicrophone&) = delete;
    UnpluggedMicrophone& operator=(const UnpluggedMicrophone&) = delete;

    void plugIn()
    {
        if (std::exchange(isUnplugged_, false))
            desktop({QStringLiteral("plug")});
    }

private:
    bool isUnplugged_ = true;
};

} // namespace corvandi::testing
