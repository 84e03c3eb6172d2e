#pragma once

#include "base/system_log.h"

#include <QProcess>
#include <QString>

namespace corvandi {

/// The desktop's own lasting setting "toolkit-accessibility", written through its command line tool,
/// because switching the service on holds for the session only.
///
/// Thread: main thread only. The tool is not waited for; one that is missing or fails is logged at most
/// once, one that still runs when this is destroyed is killed.
class ToolkitSetting {
public:
    explicit ToolkitSetting(SystemLog& log, QString tool = QStringLiteral("gsettings"));
    ~ToolkitSetting();
    ToolkitSetting(const ToolkitSetting&) = delete;
    ToolkitSetting& operator=(const ToolkitSetting&) = delete;

    void turnOn();

private:
    void onFailure(const QString& reason);

    SystemLog& log_;
    QString tool_;
    QProcess process_;
    bool hasLogged_ = false;
};

} // namespace corvandi
