#include "system/desktop/desktop_system_settings.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <utility>

namespace corvandi {
namespace {

/// A desktop and one program of it; an empty argument is none.
struct KnownPage {
    const char* desktop;
    const char* program;
    const char* argument;
};

/// Of several programs for one desktop, the newest comes first.
constexpr KnownPage knownPages[] = {
    {"GNOME", "gnome-control-center", "universal-access"},
    {"Budgie", "budgie-control-center", "universal-access"},
    {"Unity", "unity-control-center", "universal-access"},
    {"KDE", "systemsettings", "kcm_access"},
    {"KDE", "systemsettings5", "kcm_access"},
    {"XFCE", "xfce4-accessibility-settings", ""},
    {"MATE", "mate-at-properties", ""},
    {"X-Cinnamon", "cinnamon-settings", "accessibility"},
    {"Cinnamon", "cinnamon-settings", "accessibility"},
};

} // namespace

std::vector<SettingsCommand> accessibilitySettings(const QStringList& desktops)
{
    std::vector<SettingsCommand> commands;
    for (const QString& desktop : desktops) {
        for (const KnownPage& page : knownPages) {
            if (desktop.compare(QLatin1String(page.desktop), Qt::CaseInsensitive) != 0)
                continue;
            const QString argument = QLatin1String(page.argument);
            commands.push_back(
                {QLatin1String(page.program), argument.isEmpty() ? QStringList() : QStringList{argument}});
        }
    }
    return commands;
}

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
