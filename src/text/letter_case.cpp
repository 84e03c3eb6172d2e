#include "text/letter_case.h"

#include "text/icu_strings.h"

#include <unicode/locid.h>

namespace corvandi {

QString lowerCased(const QString& text)
{
    return fromIcu(readableByIcu(text).toLower(icu::Locale::getRoot()));
}

QString upperCased(const QString& text)
{
    return fromIcu(readableByIcu(text).toUpper(icu::Locale::getRoot()));
}

} // namespace corvandi
