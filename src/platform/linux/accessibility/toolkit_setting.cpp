#include "platform/linux/accessibility/toolkit_setting.h"

namespace corvandi {

ToolkitSetting::ToolkitSetting(SystemLog& log, QString tool)
    : log_(log)
    , tool_(std::move(tool))
{
    process_.setStandardInputFile(QProcess::nullDevice());
    process_.setStandardOutputFile(QProcess::nullDevice());
    QObject::connect(&process_, &QProcess::errorOccurred, &process_,
                     [this] { onFailure(process_.errorString()); });
    QObject::connect(&process_, &QProcess::finished, &process_, [this](int code) {
        if (code != 0)
            onFailure(QString::fromLocal8Bit(process_.readAllStandardError()).trimmed());
    });
}

ToolkitSetting::~ToolkitSetting()
{
    process_.disconnect();
    process_.kill();
    process_.waitForFinished();
}

void ToolkitSetting::turnOn()
{
    if (process_.state() != QProcess::NotRunning)
        return;
    process_.start(tool_, {QStringLiteral("set"), QStringLiteral("org.gnome.desktop.interface"),
                           QStringLiteral("toolkit-accessibility"), QStringLiteral("true")});
}

void ToolkitSetting::onFailure(const QString& reason)
{
    if (!std::exchange(hasLogged_, true))
        log_.write(QStringLiteral("accessibility is on for this session only: %1: %2").arg(tool_, reason));
}

} // namespace corvandi
