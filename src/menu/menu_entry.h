#pragma once

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

} // namespace corvandi
