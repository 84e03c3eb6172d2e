#pragma once

#include "base/locale.h"
#include "ports/system_log.h"
#include "ports/user_defaults.h"

namespace corvandi {

/// The language in which the user wants to dictate: the one that the preference `speechLocale` names by its
/// BCP 47 tag, such as "en-US", else the current locale. A value that is no tag is logged.
///
/// Thread: main thread only.
[[nodiscard]] Locale speechLocale(const UserDefaults& defaults, SystemLog& log);

} // namespace corvandi
