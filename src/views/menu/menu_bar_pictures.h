#pragma once

#include "shell/menu/menu_bar_icon.h"

#include <QIcon>

namespace corvandi {

/// The program's own picture for `MenuBarIcon`, drawn from its mark; nothing when that is not built in.
[[nodiscard]] std::optional<MenuBarImage> programPicture();

/// The symbol of this name; nothing when there is none.
[[nodiscard]] std::optional<MenuBarImage> symbolPicture(const QString& name);

/// An icon for trays, drawn sharp at every size and scale, in the middle of a square.
///
/// Nobody tells a program whether a tray is light or dark. So the icon bears the name of a symbolic icon
/// when `symbolicName` is installed in the icon theme: trays that understand names draw that one in their
/// own colour. The others get the picture, a template in white with a thin dark edge, which stands out
/// from both. The toolkit finds a symbolic icon only if it was there when the program started, and an SVG
/// file only with its SVG plugin.
[[nodiscard]] QIcon templateIcon(const MenuBarImage& image, const QString& symbolicName = QString());

} // namespace corvandi
