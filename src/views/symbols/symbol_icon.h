#pragma once

#include "views/symbols/symbol.h"

#include <QColor>
#include <QIcon>
#include <QPalette>

namespace corvandi {

/// An icon in the colour of the text beside it: the palette's text of `role`, pale while disabled, the
/// text on a selection while selected. Follows changes of the application's palette by itself.
///
/// Thread: main thread only.
[[nodiscard]] QIcon symbolIcon(Symbol symbol, QPalette::ColorRole role = QPalette::WindowText);

/// An icon in a colour of its own, which only gives way on a selection and when it is disabled.
[[nodiscard]] QIcon symbolIcon(Symbol symbol, const QColor& color);

} // namespace corvandi
