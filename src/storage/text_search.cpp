#include "storage/text_search.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>

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

bool isAccentAt(const icu::UnicodeString& text, int32_t index)
{
    return index < text.length() && u_getCombiningClass(text.char32At(index)) >= firstAccentClass;
}

} // namespace

TextSearch::TextSearch(const QString& wanted, const Locale& locale)
    : foldOptions_(foldOptionsFor(locale))
    , wanted_(folded(wanted))
{
}

bool TextSearch::isIn(const QString& text) const
{
    const icu::UnicodeString searched = folded(text);
    int32_t found = searched.indexOf(wanted_);
    while (found >= 0 && isAccentAt(searched, found + wanted_.length()))
        found = searched.indexOf(wanted_, found + 1);
    return found >= 0;
}

icu::UnicodeString TextSearch::folded(const QString& text) const
{
    constexpr UBool notTerminated = false;
    const icu::UnicodeString alias(notTerminated, text.utf16(), static_cast<int32_t>(text.size()));
    // Folding looks at single characters, and may leave letters that compose again.
    return composed(composed(alias).foldCase(foldOptions_));
}

} // namespace corvandi
