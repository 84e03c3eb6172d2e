#include "platform/linux/system_settings/desktop_system_settings.h"

#include "platform/linux/system_settings/settings_commands.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <utility>

namespace corvandi {
namespace {

bool start(const SettingsCommand& command, const QStringList& folders)
{
    const QString program = QStandardPaths::findExecutable(command.program, folders);
    return !program.isEmpty() && QProcess::startDetached(program, command.arguments, QDir::homePath());
}

} // namespace

DesktopSystemSettings::DesktopSystemSettings(QStringList desktops, std::function<void(const QString&)> tell,
                                             QStringList programFolders)
    : desktops_(std::move(desktops))
    , tell_(std::move(tell))
    , programFolders_(std::move(programFolders))
{
}

QStringList DesktopSystemSettings::desktopsFromEnvironment()
{
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'), Qt::SkipEmptyParts);
}

void DesktopSystemSettings::open(SystemSettingsPage page)
{
    switch (page) {
    case SystemSettingsPage::accessibility:
        if (!openAccessibility())
            tell_(QCoreApplication::translate("SystemSettings",
                                              "Look for “Accessibility” in your desktop's settings."));
        return;
    case SystemSettingsPage::languageModel:
        tell_(QCoreApplication::translate(
            "SystemSettings", "Start a language model server on this computer, then come back here."));
        return;
    }
}

bool DesktopSystemSettings::openAccessibility() const
{
    const auto commands = accessibilitySettings(desktops_);
    return std::any_of(commands.begin(), commands.end(),
                       [this](const SettingsCommand& command) { return start(command, programFolders_); });
}

} // namespace corvandi
