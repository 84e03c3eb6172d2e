#include "insertion/typing_chunks.h"

#include <algorithm>

namespace corvandi {
namespace {

/// What one keyboard event carries at most.
constexpr size_t unitsPerEvent = 20;

constexpr bool isHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

} // namespace

std::vector<std::u16string> typingChunks(std::u16string_view units)
{
    std::vector<std::u16string> chunks;
    while (!units.empty()) {
        size_t length = std::min(unitsPerEvent, units.size());
        if (length < units.size() && length > 1 && isHighSurrogate(units[length - 1]))
            --length;
        chunks.emplace_back(units.substr(0, length));
        units.remove_prefix(length);
    }
    return chunks;
}

} // namespace corvandi
