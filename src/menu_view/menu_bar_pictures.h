#pragma once

#include "menu/menu_bar_icon.h"

namespace corvandi {

/// The program's own picture for `MenuBarIcon`, drawn from its mark; nothing when that is not built in.
[[nodiscard]] std::optional<MenuBarImage> programPicture();

/// The symbol of this name; nothing when there is none.
[[nodiscard]] std::optional<MenuBarImage> symbolPicture(const QString& name, const QString& description);

} // namespace corvandi
