#pragma once

#include "core/data/settings.h"

#include <QKeyCombination>
#include <QString>

#include <functional>
#include <optional>
#include <variant>
#include <vector>

namespace corvandi {

/// A line that tells something and can't be chosen.
struct MenuText {
    QString text;
};

/// A line that does something when it is chosen. An action that is not set does nothing.
struct MenuButton {
    QString title;
    std::function<void()> action;
    /// Qt's Control stands for the key that the platform uses for menus: Command or Control.
    std::optional<QKeyCombination> shortcut;
    bool isEnabled = true;
};

struct MenuDivider {};

using MenuEntry = std::variant<MenuText, MenuButton, MenuDivider>;
/// From top to bottom.
using MenuEntries = std::vector<MenuEntry>;

/// Whether two menus look the same; what their buttons do is not compared.
[[nodiscard]] bool looksLike(const MenuEntries& one, const MenuEntries& other);

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

/// The menu where no dictation is possible at all: why, in words, and quitting.
[[nodiscard]] MenuEntries refusedMenuEntries(const QString& words, std::function<void()> quit);

} // namespace corvandi
