#include "platform/linux/workspace/desktop_locales.h"

namespace corvandi {

QString messageLocale()
{
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const QString value = qEnvironmentVariable(variable);
        if (!value.isEmpty())
            return value;
    }
    return {};
}

QStringList desktopLocales(const QString& localeName)
{
    const QString modifierPart = localeName.section(QLatin1Char('@'), 1);
    const QString modifier = modifierPart.isEmpty() ? QString() : QLatin1Char('@') + modifierPart;
    const QString withCountry = localeName.section(QLatin1Char('@'), 0, 0).section(QLatin1Char('.'), 0, 0);
    const QString language = withCountry.section(QLatin1Char('_'), 0, 0);
    if (language.isEmpty() || language == QLatin1String("C") || language == QLatin1String("POSIX"))
        return {};
    QStringList locales{withCountry + modifier, withCountry, language + modifier, language};
    locales.removeDuplicates();
    return locales;
}

} // namespace corvandi
