#pragma once

#include <QVariantList>

#include <string>
#include <vector>

namespace corvandi::harness {

/// One line of a menu as programs hand it to the desktop's tray (com.canonical.dbusmenu).
struct MenuLine {
    /// By which the tray names it to the program.
    int id = 0;
    QVariantMap properties;

    /// The label, in brackets if it can be chosen, and the shortcut; "---" for a divider.
    [[nodiscard]] std::string text() const;
};

/// The lines of a menu without submenus, from top to bottom, from the answer to GetLayout.
[[nodiscard]] std::vector<MenuLine> menuLines(const QVariantList& layout);

} // namespace corvandi::harness
