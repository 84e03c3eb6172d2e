#pragma once

#include <QString>

#include <cstdint>

namespace corvandi {

/// Names of keys, to be shown; nothing reads them back.
namespace KeyCodes {

/// The name of the key with this virtual key code: letters, digits, "Return", "Tab", "Space", "Delete"
/// and "Esc" as they stand on a US keyboard, whatever the user's layout. Any other number, negative ones
/// too, is "Key " and the number.
[[nodiscard]] QString name(int64_t keyCode);

} // namespace KeyCodes
} // namespace corvandi
