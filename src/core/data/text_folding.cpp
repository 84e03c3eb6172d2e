#include "core/data/text_folding.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>

namespace corvandi {
namespace {

/// The combining classes from here on are marks around a letter: what makes another letter of it.
constexpr uint8_t firstAccentClass = 200;

uint32_t foldOptionsFor(const Locale& locale)
{
    const QString language = locale.languageCode().value_or(QString());
    const bool hasDotlessI = language == QLatin1String("tr") || language == QLatin1String("az");
    return hasDotlessI ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT;
}

icu::UnicodeString composed(const icu::UnicodeString& text)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* normalizer = icu::Normalizer2::getNFCInstance(status);
    return U_SUCCESS(status) ? normalizer->normalize(text, status) : text;
}

bool isAccentAt(const QString& text, qsizetype index)
{
    if (index >= text.size())
        return false;
    UChar32 character = 0;
    U16_NEXT(text.utf16(), index, text.size(), character);
    return u_getCombiningClass(character) >= firstAccentClass;
}

} // namespace

TextFolding::TextFolding(const Locale& locale)
    : options_(foldOptionsFor(locale))
{
}

QString TextFolding::folded(const QString& text) const
{
    constexpr UBool notTerminated = false;
    const icu::UnicodeString alias(notTerminated, text.utf16(), static_cast<int32_t>(text.size()));
    // Folding looks at single characters, and may leave letters that compose again.
    const icu::UnicodeString folded = composed(composed(alias).foldCase(options_));
    return QString::fromUtf16(folded.getBuffer(), folded.length());
}

bool TextFolding::contains(const QString& foldedText, const QString& foldedPart)
{
    qsizetype found = foldedText.indexOf(foldedPart);
    while (found >= 0 && isAccentAt(foldedText, found + foldedPart.size()))
        found = foldedText.indexOf(foldedPart, found + 1);
    return found >= 0;
}

} // namespace corvandi
