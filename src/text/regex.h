#pragma once

#include <QString>

#include <unicode/regex.h>

#include <memory>
#include <optional>

namespace corvandi {

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
