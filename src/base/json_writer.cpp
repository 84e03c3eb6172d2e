#include "base/json_writer.h"

#include "base/error.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <array>
#include <charconv>
#include <cmath>

namespace corvandi {
namespace {

/// The first whole number that a double shares with a neighbour.
constexpr double exactIntegerLimit = 9'007'199'254'740'992.0;

constexpr UChar32 firstBeyondAscii = 0x80;
constexpr UChar32 replacementCharacter = 0xFFFD;

/// The letter behind the backslash in a control character's short form; 0 for one that has none.
char shortEscape(UChar32 character)
{
    switch (character) {
    case '"':
    case '\\':
        return static_cast<char>(character);
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return 0;
    }
}

void appendEscaped(QByteArray& json, UChar32 character)
{
    constexpr const char* digits = "0123456789abcdef";
    json.append('\\');
    if (const char letter = shortEscape(character))
        json.append(letter);
    else
        json.append("u00").append(digits[character >> 4]).append(digits[character & 0xF]);
}

void appendUtf8(QByteArray& json, UChar32 character)
{
    std::array<uint8_t, U8_MAX_LENGTH> bytes{};
    qsizetype length = 0;
    U8_APPEND_UNSAFE(bytes, length, character);
    json.append(reinterpret_cast<const char*>(bytes.data()), length);
}

void appendCharacter(QByteArray& json, UChar32 character)
{
    if (character == '"' || character == '\\' || character < ' ')
        appendEscaped(json, character);
    else if (character < firstBeyondAscii)
        json.append(static_cast<char>(character));
    else
        appendUtf8(json, U_IS_SURROGATE(character) ? replacementCharacter : character);
}

} // namespace

void JsonWriter::key(const char* name)
{
    separate();
    json_.append('"').append(name).append("\":");
    isFirst_ = true;
}

void JsonWriter::value(QStringView text)
{
    separate();
    json_.reserve(json_.size() + text.size() + 2);
    json_.append('"');
    const char16_t* units = text.utf16();
    for (qsizetype i = 0; i < text.size();) {
        UChar32 character = 0;
        U16_NEXT(units, i, text.size(), character);
        appendCharacter(json_, character);
    }
    json_.append('"');
}

void JsonWriter::value(double number)
{
    if (!std::isfinite(number))
        throw Error(QStringLiteral("a number is not finite"));
    separate();
    std::array<char, 32> digits{};
    const bool isWhole = std::trunc(number) == number && std::abs(number) < exactIntegerLimit;
    const auto result = isWhole ? std::to_chars(digits.begin(), digits.end(), static_cast<int64_t>(number))
                                : std::to_chars(digits.begin(), digits.end(), number);
    json_.append(digits.data(), result.ptr - digits.data());
}

void JsonWriter::value(const QUuid& id)
{
    separate();
    json_.append('"').append(id.toByteArray(QUuid::WithoutBraces).toUpper()).append('"');
}

void JsonWriter::begin(char bracket)
{
    separate();
    json_.append(bracket);
    isFirst_ = true;
}

void JsonWriter::end(char bracket)
{
    json_.append(bracket);
    isFirst_ = false;
}

void JsonWriter::separate()
{
    if (!isFirst_)
        json_.append(',');
    isFirst_ = false;
}

} // namespace corvandi
