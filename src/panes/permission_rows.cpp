#include "panes/permission_rows.h"

#include <QCoreApplication>

namespace corvandi {
namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("PermissionRow", text);
}

PermissionRow microphoneRow(PermissionsModel& permissions)
{
    return {
        .title = translated(QT_TRANSLATE_NOOP("PermissionRow", "Microphone")),
        .detail = translated(QT_TRANSLATE_NOOP("PermissionRow", "Captures audio while you dictate.")),
        .state = permissions.microphone(),
        .grant = [&permissions] { permissions.requestMicrophone(); },
    };
}

} // namespace

PermissionsPane::PermissionsPane(PermissionsModel& permissions, SystemSettings& systemSettings)
    : permissions_(permissions)
    , systemSettings_(systemSettings)
{
}

PermissionRows PermissionsPane::rows() const
{
    return {
        .microphone = microphoneRow(permissions_),
        .accessibility =
            {
                .title = translated(QT_TRANSLATE_NOOP("PermissionRow", "Accessibility")),
                .detail = translated(QT_TRANSLATE_NOOP(
                    "PermissionRow", "Lets Corvandi capture the global hotkey and insert text.")),
                .state = permissions_.accessibility(),
                .grant =
                    [&permissions = permissions_, &systemSettings = systemSettings_] {
                        permissions.requestAccessibility();
                        systemSettings.open(SystemSettingsPage::accessibility);
                    },
            },
    };
}

QString PermissionsPane::note()
{
    return QCoreApplication::translate(
        "PermissionsPane",
        "Corvandi runs entirely on-device. If a permission gets reset, you can grant it again here.");
}

PermissionRows welcomeRows(PermissionsModel& permissions)
{
    return {
        .microphone = microphoneRow(permissions),
        .accessibility =
            {
                .title = translated(QT_TRANSLATE_NOOP("PermissionRow", "Accessibility")),
                .detail = translated(
                    QT_TRANSLATE_NOOP("PermissionRow", "Captures the global hotkey and inserts text.")),
                .state = permissions.accessibility(),
                .grant = [&permissions] { permissions.requestAccessibility(); },
            },
    };
}

} // namespace corvandi
