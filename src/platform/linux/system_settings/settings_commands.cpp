#include "platform/linux/system_settings/settings_commands.h"

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

} // namespace corvandi
