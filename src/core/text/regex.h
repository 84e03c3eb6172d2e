#pragma once

#include <QString>
#include <QStringView>

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <memory>
#include <optional>

namespace corvandi {

/// Lets ICU read `text` without copying it. Valid for as long as `text` lives unchanged.
[[nodiscard]] inline icu::UnicodeString readableByIcu(const QString& text)
{
    constexpr UBool notTerminated = false;
    return {notTerminated, QStringView(text).utf16(), static_cast<int32_t>(text.size())};
}

[[nodiscard]] inline QString fromIcu(const icu::UnicodeString& text)
{
    // Not fromUtf16(), which takes a byte order mark away.
    return QStringView(text.getBuffer(), text.length()).toString();
}

/// A compiled regular expression in ICU's syntax. Finds nothing and replaces nothing when it could not be
/// compiled, or when ICU gives up on a text (it bounds the memory of a match).
///
/// Thread: any, also several at once.
class Regex {
public:
    enum class LetterCase { Matters, Ignored };

    explicit Regex(const QString& pattern, LetterCase letterCase = LetterCase::Matters);

    [[nodiscard]] bool isValid() const { return pattern_ != nullptr; }
    /// Where the first match begins.
    [[nodiscard]] std::optional<qsizetype> firstMatch(const QString& text) const;
    /// `text` with every match replaced; "$1" in `replacement` is the first group.
    [[nodiscard]] QString replaced(const QString& text, const QString& replacement) const;

private:
    std::unique_ptr<const icu::RegexPattern> pattern_;
};

} // namespace corvandi
