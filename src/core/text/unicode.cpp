#include "core/text/unicode.h"

#include "core/text/regex.h"
#include "core/text/vocab_replacer.h"

#include <unicode/locid.h>
#include <unicode/uchar.h>

namespace corvandi {

QString lowerCased(const QString& text)
{
    return fromIcu(readableByIcu(text).toLower(icu::Locale::getRoot()));
}

QString upperCased(const QString& text)
{
    return fromIcu(readableByIcu(text).toUpper(icu::Locale::getRoot()));
}

namespace {

bool isSpaceOrTab(char16_t unit)
{
    return unit == u'\t' || u_charType(unit) == U_SPACE_SEPARATOR;
}

bool isWhitespaceOrNewline(char16_t unit)
{
    constexpr char16_t nextLine = 0x0085;
    return unit == u'\t' || (unit >= u'\n' && unit <= u'\r') || unit == nextLine ||
           (U_GET_GC_MASK(unit) & U_GC_Z_MASK) != 0;
}

/// All white space lies in the basic plane, so units do for characters.
template<class IsSpace>
QString trimmed(const QString& text, IsSpace isSpace)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isSpace(text[begin].unicode()))
        ++begin;
    while (end > begin && isSpace(text[end - 1].unicode()))
        --end;
    return text.mid(begin, end - begin);
}

} // namespace

QString trimmedOfWhitespaceAndNewlines(const QString& text)
{
    return trimmed(text, isWhitespaceOrNewline);
}

QString trimmedOfSpacesAndTabs(const QString& text)
{
    return trimmed(text, isSpaceOrTab);
}

qsizetype characterCount(const QString& text)
{
    Graphemes characters(text);
    qsizetype count = 0;
    while (characters.next())
        ++count;
    return count;
}

QString withValidSurrogates(const QString& text)
{
    if (text.isValidUtf16())
        return text;
    QString valid = text;
    for (qsizetype i = 0; i < valid.size(); ++i) {
        if (!valid[i].isSurrogate())
            continue;
        const bool isPair =
            valid[i].isHighSurrogate() && i + 1 < valid.size() && valid[i + 1].isLowSurrogate();
        if (isPair)
            ++i;
        else
            valid[i] = QChar::ReplacementCharacter;
    }
    return valid;
}

} // namespace corvandi
