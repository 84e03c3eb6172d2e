#pragma once

#include <QString>
#include <QStringList>

namespace corvandi {

/// The name of the locale of texts (LC_ALL, LC_MESSAGES, LANG, in this order); empty when none is set.
[[nodiscard]] QString messageLocale();

/// What desktop files call the languages that suit a locale ("de_AT.UTF-8@euro"), the best first: with
/// country and modifier, with country, with modifier, the bare language. Empty for "C" and "POSIX".
[[nodiscard]] QStringList desktopLocales(const QString& localeName);

} // namespace corvandi
