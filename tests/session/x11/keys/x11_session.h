#pragma once

#include "session/x11/keys/x11_connection.h"

#include <QStringList>

#include <cstdint>

namespace corvandi::testing {

/// Runs a program of the session to its end; false when it is missing or fails.
[[nodiscard]] bool run(const QString& program, const QStringList& arguments);

/// Gives the whole session this layout, as a settings panel does.
[[nodiscard]] bool setLayout(const QString& layout, const QString& variant = {});

/// Whether some client holds a core grab of this key. Asking does not disturb its holder.
[[nodiscard]] bool isGrabbed(const X11Connection& connection, uint8_t keyCode, uint16_t modifiers);

} // namespace corvandi::testing
