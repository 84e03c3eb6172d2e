#include "platform/linux/x11/typed_text.h"

namespace corvandi {
namespace {

constexpr bool isHighSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xD800;
}

constexpr bool isLowSurrogate(char16_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

constexpr char32_t combine(char16_t high, char16_t low)
{
    return 0x10000 + ((char32_t{high} - 0xD800) << 10) + (char32_t{low} - 0xDC00);
}

constexpr bool canBeTyped(char32_t character)
{
    if (character == U'\n' || character == U'\t')
        return true;
    const bool isControl = character < 0x20 || (character >= 0x7F && character < 0xA0);
    const bool isSurrogate = character >= 0xD800 && character < 0xE000;
    const bool isNoncharacter =
        (character & 0xFFFE) == 0xFFFE || (character >= 0xFDD0 && character <= 0xFDEF);
    return !isControl && !isSurrogate && !isNoncharacter;
}

} // namespace

std::u32string typedCharacters(std::u16string_view text)
{
    std::u32string characters;
    for (size_t i = 0; i < text.size(); ++i) {
        const char16_t next = i + 1 < text.size() ? text[i + 1] : u'\0';
        char32_t character = text[i];
        if (isHighSurrogate(text[i]) && isLowSurrogate(next)) {
            character = combine(text[i], next);
            ++i;
        } else if (text[i] == u'\r') {
            character = U'\n';
            i += next == u'\n';
        }
        if (canBeTyped(character))
            characters.push_back(character);
    }
    return characters;
}

} // namespace corvandi
