#include "system/accessibility/target_application.h"

#include "support/event_loop.h"

#include <csignal>

namespace corvandi::testing {
namespace {

QString lastLine(const QString& text)
{
    return text.trimmed().section(QLatin1Char('\n'), -1);
}

} // namespace

TargetApplication::TargetApplication(const QString& program, const QStringList& arguments)
{
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QObject::connect(&process_, &QProcess::readyReadStandardOutput, &process_,
                     [this] { output_ += QString::fromUtf8(process_.readAllStandardOutput()); });
    process_.start(program, arguments);
    process_.waitForStarted();
}

TargetApplication::~TargetApplication()
{
    kill();
}

bool TargetApplication::hasFocusOn(const QString& field)
{
    return waitUntil([&] { return lastLine(output_) == QStringLiteral("focus ") + field; },
                     std::chrono::seconds(20));
}

void TargetApplication::stop() const
{
    ::kill(process(), SIGSTOP);
}

void TargetApplication::resume() const
{
    ::kill(process(), SIGCONT);
}

void TargetApplication::kill()
{
    process_.kill();
    process_.waitForFinished();
}

void activateWindow(const QString& title)
{
    // The tool gives up when any window goes away while it looks through the list.
    constexpr int tries = 5;
    const QStringList arguments{QStringLiteral("-F"), QStringLiteral("-a"), title};
    for (int i = 0; i < tries && QProcess::execute(QStringLiteral("wmctrl"), arguments) != 0; ++i) {
    }
}

void pressKey(const QString& key)
{
    QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("key"), key});
}

} // namespace corvandi::testing
