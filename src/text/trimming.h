#pragma once

#include <QString>

namespace corvandi {

/// `text` without the white space and line breaks at its ends.
[[nodiscard]] QString trimmedOfWhitespaceAndNewlines(const QString& text);

/// `text` without the spaces (Unicode's space separators) and tabs at its ends; line breaks stay.
[[nodiscard]] QString trimmedOfSpacesAndTabs(const QString& text);

/// The number of characters as a person counts them (grapheme clusters).
[[nodiscard]] qsizetype characterCount(const QString& text);

} // namespace corvandi
