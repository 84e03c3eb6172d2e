#include "text/folded_text.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <array>

namespace corvandi {
namespace {

/// What "\w" of ICU's regular expressions means.
bool isWordCharacter(UChar32 character)
{
    constexpr UChar32 zeroWidthNonJoiner = 0x200C;
    constexpr UChar32 zeroWidthJoiner = 0x200D;
    constexpr uint32_t markDigitOrConnector = U_GC_M_MASK | U_GC_ND_MASK | U_GC_PC_MASK;
    return u_isUAlphabetic(character) || (U_GET_GC_MASK(character) & markDigitOrConnector) != 0 ||
           character == zeroWidthNonJoiner || character == zeroWidthJoiner;
}

bool isWordCharacterBefore(const QString& text, qsizetype position)
{
    if (position == 0)
        return false;
    UChar32 character = 0;
    U16_PREV(QStringView(text).utf16(), 0, position, character);
    return isWordCharacter(character);
}

bool isWordCharacterAt(const QString& text, qsizetype position)
{
    if (position == text.size())
        return false;
    UChar32 character = 0;
    U16_GET(QStringView(text).utf16(), 0, position, text.size(), character);
    return isWordCharacter(character);
}

} // namespace

FoldedText::FoldedText(const QString& text)
    : text_(text)
{
    origins_.clear();
    const auto capacity = static_cast<std::size_t>(text.size());
    folding_.reserve(capacity);
    origins_.reserve(capacity + 1);
    for (qsizetype begin = 0, end = 0; begin < text_.size(); begin = end) {
        U16_FWD_1(QStringView(text_).utf16(), end, text_.size());
        appendFolded(begin, end);
    }
    origins_.push_back(static_cast<std::int32_t>(text_.size()));
}

void FoldedText::appendFolded(qsizetype begin, qsizetype end)
{
    // The longest folding has three characters.
    std::array<char16_t, 8> folded{};
    UErrorCode status = U_ZERO_ERROR;
    const auto length = static_cast<std::size_t>(
        u_strFoldCase(folded.data(), folded.size(), QStringView(text_).utf16() + begin,
                      static_cast<int32_t>(end - begin), U_FOLD_CASE_DEFAULT, &status));
    folding_.append(folded.data(), length);
    origins_.push_back(static_cast<std::int32_t>(begin));
    origins_.resize(folding_.size(), insideCharacter);
}

bool FoldedText::isWhole(std::size_t begin, std::size_t end) const
{
    const std::int32_t from = origins_[begin];
    const std::int32_t to = origins_[end];
    return from != insideCharacter && to != insideCharacter && !isWordCharacterBefore(text_, from) &&
           !isWordCharacterAt(text_, to);
}

qsizetype FoldedText::lengthOf(std::size_t begin, std::size_t end) const
{
    return origins_[end] - origins_[begin];
}

void FoldedText::append(const FoldedText& source, std::size_t begin, std::size_t end)
{
    const std::int32_t from = source.origins_[begin];
    const auto shift = static_cast<std::int32_t>(text_.size()) - from;
    text_.append(QStringView(source.text_).mid(from, source.origins_[end] - from));
    folding_.append(source.folding_, begin, end - begin);
    for (std::size_t i = begin + 1; i <= end; ++i)
        origins_.push_back(source.origins_[i] == insideCharacter ? insideCharacter
                                                                 : source.origins_[i] + shift);
}

} // namespace corvandi
