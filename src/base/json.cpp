#include "base/json.h"

#include "base/error.h"

#include <QStringDecoder>

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>

namespace corvandi {
namespace {

constexpr const char* byteOrderMark = "\xEF\xBB\xBF";

[[noreturn]] void refuse(const QString& reason)
{
    throw Error(QStringLiteral("not valid JSON: ") + reason);
}

[[noreturn]] void refuseAt(qsizetype offset)
{
    refuse(QStringLiteral("unexpected content at byte %1").arg(offset + 1));
}

/// The parser takes memory many times the size of a document that is nothing but opening brackets.
void checkNesting(const QByteArray& bytes)
{
    int depth = 0;
    bool isInString = false;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const char c = bytes[i];
        if (c == '"')
            isInString = !isInString;
        else if (isInString)
            i += c == '\\' ? 1 : 0;
        else if (c == '[' || c == '{')
            ++depth;
        else if (c == ']' || c == '}')
            --depth;
        if (depth > deepestJsonNesting)
            refuse(QStringLiteral("nested too deeply at byte %1").arg(i + 1));
    }
}

const Json& member(const Json& object, const char* key, bool (Json::*isRight)() const noexcept)
{
    if (!object.is_object())
        throw Error(QStringLiteral("a value is no object"));
    const auto found = object.find(key);
    if (found == object.end())
        throw Error(QStringLiteral("\"%1\" is missing").arg(QLatin1String(key)));
    if (!((*found).*isRight)())
        throw Error(QStringLiteral("\"%1\" has the wrong type").arg(QLatin1String(key)));
    return *found;
}

bool isCanonicalUuid(const std::string& text)
{
    if (text.size() != 36)
        return false;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool isHyphen = i == 8 || i == 13 || i == 18 || i == 23;
        if (isHyphen ? text[i] != '-' : std::isxdigit(static_cast<unsigned char>(text[i])) == 0)
            return false;
    }
    return true;
}

} // namespace

Json parseJson(const QByteArray& bytes)
{
    // The parser skips such a mark, and takes a null byte for the end.
    if (bytes.startsWith(byteOrderMark))
        refuseAt(0);
    if (const qsizetype null = bytes.indexOf('\0'); null >= 0)
        refuseAt(null);
    checkNesting(bytes);
    try {
        return Json::parse(bytes.begin(), bytes.end());
    } catch (const Json::parse_error& error) {
        // Its own description quotes the document.
        refuseAt(std::max<qsizetype>(static_cast<qsizetype>(error.byte) - 1, 0));
    } catch (const Json::exception&) {
        refuse(QStringLiteral("a number is too large"));
    }
}

QString stringMember(const Json& object, const char* key)
{
    const auto& text = member(object, key, &Json::is_string).get_ref<const std::string&>();
    // QString's own conversion drops a byte-order mark at the start, which is text here.
    QStringDecoder decode(QStringDecoder::Utf8,
                          QStringDecoder::Flag::ConvertInitialBom | QStringDecoder::Flag::Stateless);
    return decode(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

double numberMember(const Json& object, const char* key)
{
    return member(object, key, &Json::is_number).get<double>();
}

QUuid uuidMember(const Json& object, const char* key)
{
    const auto& text = member(object, key, &Json::is_string).get_ref<const std::string&>();
    if (!isCanonicalUuid(text))
        throw Error(QStringLiteral("\"%1\" is no UUID").arg(QLatin1String(key)));
    return QUuid::fromString(QLatin1String(text.data(), static_cast<qsizetype>(text.size())));
}

const Json& arrayMember(const Json& object, const char* key)
{
    return member(object, key, &Json::is_array);
}

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
