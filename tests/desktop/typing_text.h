#pragma once

#include <QString>

namespace corvandi::testing {

/// `count` characters of all kinds, the same ones every time: everything on an American keyboard, accents,
/// quotation marks, dashes, Chinese and pictures, in lines of 80. Fewer distinct characters are missing on
/// an American, a German and a French layout than a keyboard has room for. The count is of characters, not
/// of UTF-16 units.
[[nodiscard]] QString mixedText(int count);

/// `count` different characters that no keyboard layout has.
[[nodiscard]] QString foreignCharacters(int count);

} // namespace corvandi::testing
