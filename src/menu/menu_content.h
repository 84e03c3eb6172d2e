#pragma once

#include "menu/menu_entry.h"
#include "storage/settings.h"

namespace corvandi {

/// What the menu's buttons do.
struct MenuActions {
    /// Opens the system's page on which accessibility is granted; asks nothing itself.
    std::function<void()> openAccessibility;
    std::function<void()> checkForUpdates;
    /// Opens the settings window on the page that it showed last.
    std::function<void()> openSettings;
    /// Ends the program in the ordinary way.
    std::function<void()> quit;
};

/// The menu of the menu bar's icon: whether the hotkey works and how to dictate, updates, settings,
/// quitting. Without state: make a new one each time that the menu opens or that one of these changes.
///
/// Thread: main thread only.
struct MenuContent {
    const Settings& settings;
    /// Whether the hotkey is being watched right now.
    bool isHotkeyActive = false;
    bool canCheckForUpdates = false;
    MenuActions actions;

    [[nodiscard]] MenuEntries entries() const;
};

} // namespace corvandi
