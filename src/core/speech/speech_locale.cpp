#include "core/speech/speech_locale.h"

namespace corvandi {

Locale speechLocale(const UserDefaults& defaults, SystemLog& log)
{
    const std::optional<QString> wanted = defaults.string(QStringLiteral("speechLocale"));
    if (!wanted)
        return Locale::current();
    if (const std::optional<Locale> locale = Locale::fromTag(*wanted))
        return *locale;
    log.write(QStringLiteral("the preference speechLocale is no language tag such as en-US: ") + *wanted);
    return Locale::current();
}

} // namespace corvandi
