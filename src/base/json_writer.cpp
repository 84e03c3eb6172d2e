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

/// Collects small pieces, since appending each to the document would take most of the time.
class StringContent {
public:
    explicit StringContent(QByteArray& json)
        : json_(json)
    {
    }

    void append(UChar32 character)
    {
        if (filled_ > chunk_.size() - longestForm)
            flush();
        if (character == '"' || character == '\\' || character < ' ')
            appendEscaped(character);
        else if (character < 0x80)
            put(static_cast<char>(character));
        else
            appendUtf8(U_IS_SURROGATE(character) ? replacementCharacter : character);
    }

    void flush()
    {
        json_.append(chunk_.data(), static_cast<qsizetype>(filled_));
        filled_ = 0;
    }

private:
    void put(char c) { chunk_[filled_++] = c; }

    void appendEscaped(UChar32 character)
    {
        constexpr const char* digits = "0123456789abcdef";
        put('\\');
        if (const char letter = shortEscape(character)) {
            put(letter);
            return;
        }
        for (const char c : {'u', '0', '0', digits[character >> 4], digits[character & 0xF]})
            put(c);
    }

    void appendUtf8(UChar32 character)
    {
        std::array<uint8_t, U8_MAX_LENGTH> bytes{};
        size_t length = 0;
        U8_APPEND_UNSAFE(bytes, length, character);
        for (size_t i = 0; i < length; ++i)
            put(static_cast<char>(bytes[i]));
    }

    static constexpr size_t longestForm = sizeof("\\u0000") - 1;
    QByteArray& json_;
    std::array<char, 1024> chunk_;
    size_t filled_ = 0;
};

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
    json_.append('"');
    StringContent content(json_);
    const char16_t* units = text.utf16();
    for (qsizetype i = 0; i < text.size();) {
        UChar32 character = 0;
        U16_NEXT(units, i, text.size(), character);
        content.append(character);
    }
    content.flush();
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
