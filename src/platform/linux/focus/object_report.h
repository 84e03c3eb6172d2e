#pragma once

#include "platform/linux/focus/accessible_object.h"
#include "platform/linux/focus/bus_reader.h"

#include <sys/types.h>

namespace corvandi {

/// What an application tells when it is asked about one object.
struct ObjectReport {
    enum class Outcome {
        told,
        /// There is no such object any more.
        gone,
        /// The application did not answer in time.
        unanswered,
    };

    Outcome outcome = Outcome::unanswered;
    /// The rest is set only if it was told. The process is the one behind the object's bus name.
    pid_t process = 0;
    AccessibleTraits traits;
};

/// Thread: the reader's.
[[nodiscard]] ObjectReport reportOn(BusReader& reader, const ObjectRef& object,
                                    const QDeadlineTimer& deadline);

} // namespace corvandi
