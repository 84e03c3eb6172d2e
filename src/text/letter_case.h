#pragma once

#include <QString>

namespace corvandi {

/// `text` in lower case, by Unicode's rules and those of no language in particular.
[[nodiscard]] QString lowerCased(const QString& text);

/// `text` in upper case, by the same rules. May be longer.
[[nodiscard]] QString upperCased(const QString& text);

} // namespace corvandi
