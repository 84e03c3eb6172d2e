#pragma once

#include "base/error.h"

#include <cerrno>
#include <system_error>

namespace corvandi {

/// Throws what the system says about an error number; by default about its last error.
[[noreturn]] inline void throwSystemFailure(int number = errno)
{
    throw Error(QString::fromStdString(std::generic_category().message(number)));
}

} // namespace corvandi
