#pragma once

#include <QIcon>

namespace corvandi {

/// The application's icon in its own colours, sharp in every size. The same drawing is installed for the
/// desktop under the application's identifier. Its one-colour form for trays is a symbol.
///
/// Thread: main thread only.
[[nodiscard]] QIcon applicationIcon();

} // namespace corvandi
