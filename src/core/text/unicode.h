#pragma once

#include <QString>

namespace corvandi {

/// `text` in lower case, by Unicode's rules and those of no language in particular.
[[nodiscard]] QString lowerCased(const QString& text);

/// `text` in upper case, by the same rules. May be longer.
[[nodiscard]] QString upperCased(const QString& text);

/// `text` without the white space and line breaks at its ends.
[[nodiscard]] QString trimmedOfWhitespaceAndNewlines(const QString& text);

/// `text` without the spaces (Unicode's space separators) and tabs at its ends; line breaks stay.
[[nodiscard]] QString trimmedOfSpacesAndTabs(const QString& text);

/// The number of characters as a person counts them (grapheme clusters).
[[nodiscard]] qsizetype characterCount(const QString& text);

/// `text` with U+FFFD, the replacement character, in place of each surrogate that is not half of a pair;
/// a text without such is returned as it is. The result converts to UTF-8 and back without a loss.
[[nodiscard]] QString withValidSurrogates(const QString& text);

} // namespace corvandi
