#include "shell/panes/permission_rows.h"

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

namespace {

using namespace std::chrono_literals;

constexpr MainQueue::Duration tickInterval = 1s;

} // namespace

Welcome::Welcome(PermissionsModel& permissions, MainQueue& queue, std::function<void()> onGetStarted)
    : permissions_(permissions)
    , queue_(queue)
    , onGetStarted_(std::move(onGetStarted))
{
}

QString Welcome::buttonTitle() const
{
    return permissions_.allGranted() ? QCoreApplication::translate("WelcomeView", "Get Started")
                                     : QCoreApplication::translate("WelcomeView", "Continue");
}

void Welcome::getStarted() const
{
    if (onGetStarted_)
        onGetStarted_();
}

void Welcome::appear()
{
    permissions_.refresh();
    ticks_ = queue_.every(tickInterval, [this] {
        if (!permissions_.allGranted())
            permissions_.refresh();
    });
}

void Welcome::disappear()
{
    ticks_.reset();
}

} // namespace corvandi
