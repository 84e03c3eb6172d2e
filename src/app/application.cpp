#include "app/application.h"

#include "app/facilities.h"
#include "app/settings_panes.h"
#include "shell/app_delegate.h"
#include "shell/menu/menu_bar_icon.h"
#include "shell/menu/menu_content.h"
#include "shell/panes/permission_rows.h"
#include "shell/permissions/permissions_model.h"
#include "shell/updates/feed_updater.h"
#include "shell/updates/updater_view_model.h"
#include "system/desktop/tray_icon.h"
#include "system/process/idle_activation_policy.h"
#include "system/updates/update_configuration.h"
#include "system/updates/web_update_source.h"
#include "views/appearance/appearance_follower.h"
#include "views/dialogs/notice_dialogs.h"
#include "views/menu/menu_bar_pictures.h"
#include "views/menu/menu_view.h"
#include "views/settings/managed_widget_windows.h"
#include "views/settings/welcome_view.h"
#include "views/symbols/symbol.h"

#include <QApplication>
#include <QDesktopServices>
#include <QEventLoop>

#include <optional>

namespace corvandi {

/// In the order of creation; destroyed in the reverse one.
struct Application::Objects {
    Objects(SystemLog& log, const WindowSystem& windowSystem)
        : facilities(log, windowSystem)
    {
    }

    [[nodiscard]] std::shared_ptr<DictationController> makeController();
    [[nodiscard]] std::unique_ptr<QWidget> makeSettings();
    [[nodiscard]] std::unique_ptr<QWidget> makeWelcome(ManagedWindows::Callback getStarted);
    [[nodiscard]] MenuEntries menuEntries();

    Facilities facilities;
    AppearanceFollower appearanceFollower{facilities.appearance};
    Settings settings{facilities.userDefaults};
    PermissionsModel permissions{facilities.captureAuthorization, facilities.accessibility};
    SettingsNavigator navigator;
    IdleActivationPolicy activationPolicy;
    std::optional<SettingsPanes> settingsPanes;
    ManagedWidgetWindows windows{
        {.settings = [this] { return makeSettings(); },
         .welcome =
             [this](ManagedWindows::Callback getStarted) { return makeWelcome(std::move(getStarted)); }},
        [this](const QWidget& window) { facilities.session->bringToFront(window); }};
    std::shared_ptr<AppDelegate> delegate = AppDelegate::create(
        {facilities.queue, facilities.userDefaults, permissions, navigator, activationPolicy, windows},
        [this] { return makeController(); });

    WebUpdateSource updateSource{UpdateConfiguration::builtIn(facilities.log), facilities.queue};
    NoticeDialogs updateDialogs;
    FeedUpdater feedUpdater{UpdaterPlatform{facilities.queue, facilities.wallClock, facilities.userDefaults,
                                            facilities.log, updateSource, updateDialogs,
                                            &QDesktopServices::openUrl},
                            RunningProgram::thisOne()};
    UpdaterViewModel updater{feedUpdater};

    MenuBarIcon menuBarIcon{programPicture, symbolPicture};
    MenuView menu{[this] { return menuEntries(); }};
    TrayIcon trayIcon{
        templateIcon(menuBarIcon.image(), QStringLiteral("io.corvandi.Corvandi-symbolic")),
        menu.menu(),
        facilities.queue,
        facilities.session->windowTray(),
        facilities.log,
    };
};

std::shared_ptr<DictationController> Application::Objects::makeController()
{
    auto controller = DictationController::create(settings, facilities.forDictation());
    controller->onHotkeyActiveChange = [this] { menu.refresh(); };
    return controller;
}

std::unique_ptr<QWidget> Application::Objects::makeSettings()
{
    settingsPanes.emplace(facilities, settings, permissions, delegate->controller());
    return settingsPanes->makeView(navigator);
}

std::unique_ptr<QWidget> Application::Objects::makeWelcome(ManagedWindows::Callback getStarted)
{
    return std::make_unique<WelcomeView>(
        std::make_unique<Welcome>(permissions, facilities.queue, std::move(getStarted)));
}

MenuEntries Application::Objects::menuEntries()
{
    return MenuContent{
        .settings = settings,
        // Before there is a controller nothing is watched; it is not made only to be asked.
        .isHotkeyActive = delegate->hasController() && delegate->controller().isHotkeyActive(),
        .canCheckForUpdates = updater.canCheckForUpdates(),
        .actions = {.openAccessibility =
                        [this] { facilities.systemSettings.open(SystemSettingsPage::accessibility); },
                    .checkForUpdates = [this] { updater.checkForUpdates(); },
                    .openSettings = [this] { delegate->showSettings(); },
                    .quit = &QApplication::quit},
    }
        .entries();
}

Application::Application(SystemLog& log, const WindowSystem& windowSystem)
{
    QApplication::setWindowIcon(applicationIcon());
    objects_ = std::make_unique<Objects>(log, windowSystem);
    Objects& objects = *objects_;
    const auto refreshMenu = [&objects] { objects.menu.refresh(); };
    QObject::connect(&objects.settings, &Settings::hotkeyDescriptionChanged, &objects.updater, refreshMenu);
    QObject::connect(&objects.updater, &UpdaterViewModel::canCheckForUpdatesChanged, &objects.updater,
                     refreshMenu);
}

Application::~Application()
{
    AppDelegate& delegate = *objects_->delegate;
    if (!delegate.hasController())
        return;
    const QCoro::Task<> ending = delegate.controller().shutDown();
    // Not an event loop of its own: one that the toolkit was told to quit does not run.
    while (!ending.isReady())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void Application::start()
{
    // Before, nobody knows whether there may be a hotkey, and which permissions the welcome has to ask for.
    objects_->facilities.accessibility.whenAnswered([this] {
        objects_->delegate->applicationDidFinishLaunching();
        objects_->facilities.log.write(QStringLiteral("ready"));
    });
}

void Application::launchedAgain()
{
    objects_->delegate->applicationWasLaunchedAgain();
}

} // namespace corvandi
