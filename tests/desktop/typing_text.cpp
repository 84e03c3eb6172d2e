#include "typing_text.h"

#include <random>

namespace corvandi::testing {
namespace {

/// All printing characters of ASCII.
std::u32string ascii()
{
    std::u32string characters;
    for (char32_t character = U' '; character <= U'~'; ++character)
        characters.push_back(character);
    return characters;
}

constexpr std::u32string_view extras = U"äöüßÄÖÜéèêàçñøåæœ„“”‚‘’«»–—…€£§°²½·×¿¡"
                                       U"你好世界中文字我们今天很高兴见到大家"
                                       U"\U0001F600\U0001F389\U0001F44D";

} // namespace

QString mixedText(int count)
{
    constexpr int lineBreakEvery = 80;
    const std::u32string plain = ascii();
    std::mt19937 random(7);
    std::u32string text;
    for (int i = 1; i <= count; ++i) {
        const std::u32string_view kind = random() % 2 ? std::u32string_view(plain) : extras;
        const bool isLineBreak = i % lineBreakEvery == 0;
        text.push_back(isLineBreak ? U'\n' : kind[random() % kind.size()]);
    }
    return QString::fromUcs4(text.data(), static_cast<qsizetype>(text.size()));
}

QString foreignCharacters(int count)
{
    constexpr char16_t first = 0x4E00;
    QString characters;
    for (int i = 0; i < count; ++i)
        characters += QChar(static_cast<char16_t>(first + i));
    return characters;
}

} // namespace corvandi::testing
