#include "support/plain_rules.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <memory>

namespace corvandi::testing {
namespace {

/// With a backslash before each ASCII character that is neither letter nor digit.
QString escaped(const QString& text)
{
    QString result;
    for (const QChar unit : text) {
        const char16_t code = unit.unicode();
        if (code < 0x80 && !unit.isLetterOrNumber())
            result.append(QLatin1Char('\\'));
        result.append(unit);
    }
    return result;
}

icu::UnicodeString toIcu(const QString& text)
{
    return {QStringView(text).utf16(), static_cast<int32_t>(text.size())};
}

QString appliedPlainly(const VocabRule& rule, const QString& text)
{
    const QString pattern = QStringLiteral("(?<!\\w)") + escaped(rule.from) + QStringLiteral("(?!\\w)");
    const icu::UnicodeString input = toIcu(text);
    UErrorCode status = U_ZERO_ERROR;
    icu::RegexMatcher matcher(toIcu(pattern), input, UREGEX_CASE_INSENSITIVE, status);
    const icu::UnicodeString result = matcher.replaceAll(toIcu(escaped(rule.to)), status);
    if (U_FAILURE(status))
        return text;
    return QStringView(result.getBuffer(), result.length()).toString();
}

} // namespace

QString appliedPlainly(const std::vector<VocabRule>& rules, const QString& text)
{
    QString result = text;
    for (const VocabRule& rule : rules) {
        if (!rule.from.isEmpty())
            result = appliedPlainly(rule, result);
    }
    return result;
}

} // namespace corvandi::testing
