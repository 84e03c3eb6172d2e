#include "core/text/post_processor.h"

#include "core/text/regex.h"
#include "core/text/unicode.h"
#include "core/text/vocab_replacer.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

namespace corvandi {
namespace {

const Regex& fillers()
{
    static const Regex regex(QStringLiteral("\\b(?:um|umm|uh|uhh|erm|hmm|mmm)\\b[,.]?"),
                             Regex::LetterCase::Ignored);
    return regex;
}

QString withoutSpacesBeforePunctuation(const QString& text)
{
    // The look-behind changes no match; without it the time for a long run of spaces grows with the square
    // of its length.
    static const Regex regex(QStringLiteral("(?<! ) +([,.;:!?])"));
    return regex.replaced(text, QStringLiteral("$1"));
}

QString withSingleSpaces(const QString& text)
{
    static const Regex regex(QStringLiteral("\\s+"));
    return regex.replaced(text, QStringLiteral(" "));
}

QString withoutLeadingPunctuation(const QString& text)
{
    static const Regex regex(QStringLiteral("^[,.;:!?]+\\s*"));
    return regex.replaced(text, QString());
}

QString capitalizingFirstLetter(const QString& text)
{
    Graphemes characters(text);
    while (const auto character = characters.next()) {
        char32_t first = 0;
        U16_GET(QStringView(text).utf16(), 0, character->begin, text.size(), first);
        if (!u_isUAlphabetic(static_cast<UChar32>(first)))
            continue;
        const QString letter = text.mid(character->begin, character->end - character->begin);
        return text.left(character->begin) + upperCased(letter) + text.mid(character->end);
    }
    return text;
}

bool isPunctuation(UChar32 scalar)
{
    return (U_GET_GC_MASK(scalar) & U_GC_P_MASK) != 0;
}

bool isAlphanumeric(UChar32 scalar)
{
    return (U_GET_GC_MASK(scalar) & (U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK)) != 0;
}

/// Whether the scalars right before `begin` and at `end` are both there and alphanumeric.
bool isInsideWord(const QString& text, qsizetype begin, qsizetype end)
{
    if (begin == 0 || end == text.size())
        return false;
    UChar32 before = 0;
    UChar32 behind = 0;
    U16_PREV(QStringView(text).utf16(), 0, begin, before);
    U16_GET(QStringView(text).utf16(), 0, end, text.size(), behind);
    return isAlphanumeric(before) && isAlphanumeric(behind);
}

} // namespace

QString PostProcessor::stripDisfluencies(const QString& text)
{
    if (!fillers().isValid())
        return text;
    const bool startsWithFiller = fillers().firstMatch(text) == 0;
    QString result = fillers().replaced(text, QString());
    result = trimmedOfWhitespaceAndNewlines(withSingleSpaces(withoutSpacesBeforePunctuation(result)));
    if (startsWithFiller)
        result = capitalizingFirstLetter(withoutLeadingPunctuation(result));
    return result;
}

QString PostProcessor::stripPunctuation(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (qsizetype begin = 0, end = 0; begin < text.size(); begin = end) {
        UChar32 scalar = 0;
        U16_NEXT(QStringView(text).utf16(), end, text.size(), scalar);
        if (!isPunctuation(scalar) || isInsideWord(text, begin, end))
            result.append(QStringView(text).mid(begin, end - begin));
    }
    return lowerCased(result);
}

QString PostProcessor::process(const QString& text, const Options& options)
{
    const QString fluent = options.removeDisfluencies ? stripDisfluencies(text) : text;
    return options.keepPunctuation ? fluent : stripPunctuation(fluent);
}

} // namespace corvandi
