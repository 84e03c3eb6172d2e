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

inline bool isPipeWire()
{
    return outputOf(QStringLiteral("pactl"), {QStringLiteral("info")}).contains(QLatin1String("PipeWire"));
}

/// A microphone that is suspended for as long as this lives: it runs but delivers nothing. Not on PipeWire,
/// which wakes a device as long as somebody records from it.
class SuspendedMicrophone {
public:
    SuspendedMicrophone() { suspend(QStringLiteral("1")); }
    ~SuspendedMicrophone() { suspend(QStringLiteral("0")); }
    SuspendedMicrophone(const SuspendedMicrophone&) = delete;
    SuspendedMicrophone& operator=(const SuspendedMicrophone&) = delete;

private:
    static void suspend(const QString& state)
    {
        pactl({QStringLiteral("suspend-source"), QStringLiteral("mic"), state});
    }
};

/// Devices that deliver in pieces of 170 ms for as long as this lives. On PipeWire only.
class LargePieces {
public:
    LargePieces() { set(QStringLiteral("8192")); }
    ~LargePieces() { set(QStringLiteral("0")); }
    LargePieces(const LargePieces&) = delete;
    LargePieces& operator=(const LargePieces&) = delete;

private:
    static void set(const QString& frames)
    {
        (void)outputOf(QStringLiteral("pw-metadata"),
                       {QStringLiteral("-n"), QStringLiteral("settings"), QStringLiteral("0"),
                        QStringLiteral("clock.force-quantum"), frames});
    }
};

/// A microphone that is muted for as long as this lives.
class MutedMicrophone {
public:
    MutedMicrophone() { mute(QStringLiteral("1")); }
    ~MutedMicrophone() { mute(QStringLiteral("0")); }
    MutedMicrophone(const MutedMicrophone&) = delete;
    MutedMicrophone& operator=(const MutedMicrophone&) = delete;

private:
    static void mute(const QString& state)
    {
        pactl({QStringLiteral("set-source-mute"), QStringLiteral("mic"), state});
    }
};

} // namespace corvandi::testing
