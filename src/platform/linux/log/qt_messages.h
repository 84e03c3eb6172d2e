#pragma once

#include "base/registration.h"
#include "base/system_log.h"

#include <memory>

namespace corvandi {

/// Sends what Qt has to say (warnings and worse, and information; not debug output) to `log` instead
/// of the standard error output, for as long as the returned object lives; it must not outlive `log`.
/// Messages may come from any thread; one that arises while another one is being logged on the same
/// thread goes to the standard error output (Qt sees to that).
///
/// Qt has a single message handler for the whole process, so there is at most one such registration
/// at a time. Thread: main thread only.
[[nodiscard]] std::unique_ptr<Registration> routeQtMessages(SystemLog& log);

} // namespace corvandi
