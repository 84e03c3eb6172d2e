#pragma once

#include "base/main_queue.h"
#include "core/dictation/dictation_controller.h"
#include "ports/activation_policy.h"
#include "ports/user_defaults.h"
#include "shell/managed_windows.h"
#include "shell/panes/settings_navigator.h"
#include "shell/permissions/permissions_model.h"

#include <functional>
#include <memory>
#include <optional>

namespace corvandi {

/// The program as its user meets it: what happens at start-up, which window is open, and when it is an
/// agent in the tray or an application with windows.
///
/// On the first run there is the welcome and nothing else: neither is the hotkey installed nor the speech
/// model prepared until it is completed. Closing the last window never ends the program.
///
/// Thread: main thread only.
class AppDelegate : public std::enable_shared_from_this<AppDelegate> {
    struct Private {
        explicit Private() = default;
    };

public:
    using MakeController = std::function<std::shared_ptr<DictationController>()>;

    /// What the delegate works with; all of it outlives it.
    struct Parts {
        MainQueue& queue;
        UserDefaults& defaults;
        PermissionsModel& permissions;
        SettingsNavigator& navigator;
        ActivationPolicy& activationPolicy;
        ManagedWindows& windows;
    };

    /// Looks at the permissions at once. The controller is made when it is first needed.
    [[nodiscard]] static std::shared_ptr<AppDelegate> create(const Parts& parts,
                                                             MakeController makeController);
    AppDelegate(Private key, const Parts& parts, MakeController makeController);

    void applicationDidFinishLaunching();
    /// Opens the settings, or raises them; on `initialPane` if one is given, else on the page shown last
    /// or, in a new window, the first one.
    void showSettings(std::optional<SettingsPane> initialPane = {});
    void showWelcome();
    /// What a second launch of the program means: the welcome while it is not completed, else the
    /// settings. The way in on desktops without a tray.
    void applicationWasLaunchedAgain();

    [[nodiscard]] DictationController& controller();
    [[nodiscard]] bool hasController() const { return controller_ != nullptr; }

private:
    void completeWelcome();
    void startDictation();
    void managedWindowWillClose();
    [[nodiscard]] bool isCompleted() const;
    [[nodiscard]] ManagedWindows::Callback weakly(void (AppDelegate::*action)());

    Parts parts_;
    MakeController makeController_;
    std::shared_ptr<DictationController> controller_;
    std::unique_ptr<ManagedWindow> settingsWindow_;
    std::unique_ptr<ManagedWindow> welcomeWindow_;
};

} // namespace corvandi
