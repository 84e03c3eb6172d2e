#pragma once

#include "harness/target_application.h"

#include <QString>

namespace corvandi::testing {

/// Whether the text may go over several lines; a field of one line takes no line breaks.
enum class Lines { one, several };
[[nodiscard]] Lines linesOf(harness::TargetApplication::Kind kind);

/// `count` characters of all kinds, the same ones every time: everything on an American keyboard, accents,
/// quotation marks, dashes, Chinese and pictures. Fewer distinct characters are missing on an American, a
/// German and a French layout than a keyboard has room for. The count is of characters, not of UTF-16 units.
[[nodiscard]] QString mixedText(int count, Lines lines);

/// `count` different characters that no keyboard layout has.
[[nodiscard]] QString foreignCharacters(int count);

} // namespace corvandi::testing
