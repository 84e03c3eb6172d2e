#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvandi {

/// Cuts `units` (UTF-16) into the pieces that one key event each can carry: at most 20 units, and no
/// piece ends between the two halves of a surrogate pair.
[[nodiscard]] std::vector<std::u16string> typingChunks(std::u16string_view units);

} // namespace corvandi
