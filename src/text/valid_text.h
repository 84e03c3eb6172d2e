#pragma once

#include <QString>

namespace corvandi {

/// `text` with U+FFFD, the replacement character, in place of each surrogate that is not half of a pair;
/// a text without such is returned as it is. The result converts to UTF-8 and back without a loss.
[[nodiscard]] QString withValidSurrogates(const QString& text);

} // namespace corvandi
