#include "core/text/regex.h"

namespace corvandi {

Regex::Regex(const QString& pattern, LetterCase letterCase)
{
    const uint32_t flags = letterCase == LetterCase::Ignored ? UREGEX_CASE_INSENSITIVE : 0;
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexPattern> compiled(
        icu::RegexPattern::compile(readableByIcu(pattern), flags, status));
    if (U_SUCCESS(status))
        pattern_ = std::move(compiled);
}

std::optional<qsizetype> Regex::firstMatch(const QString& text) const
{
    if (!isValid())
        return std::nullopt;
    const icu::UnicodeString input = readableByIcu(text);
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::RegexMatcher> matcher(pattern_->matcher(input, status));
    if (U_FAILURE(status) || !matcher->find(status) || U_FAILURE(status))
        return std::nullopt;
    return matcher->start(status);
}

QString Regex::replaced(const QString& text, const QString& replacement) const
{
    if (!isValid())
        return text;
    const icu::UnicodeString input = readableByIcu(text);
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::RegexMatcher> matcher(pattern_->matcher(input, status));
    if (U_FAILURE(status))
        return text;
    const icu::UnicodeString result = matcher->replaceAll(readableByIcu(replacement), status);
    return U_SUCCESS(status) ? fromIcu(result) : text;
}

} // namespace corvandi
