#include "base/json_reading.h"

#include "base/error.h"

#include <QStringDecoder>

#include <algorithm>
#include <cctype>

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

} // namespace corvandi
