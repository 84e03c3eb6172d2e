#include "harness/waiting.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>

namespace corvandi::harness {

bool waitUntilReadable(int descriptor, Clock::time_point deadline)
{
    using std::chrono::milliseconds;
    for (;;) {
        const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
        pollfd request{.fd = descriptor, .events = POLLIN, .revents = 0};
        const int ready = ::poll(&request, 1, static_cast<int>(std::max(left, milliseconds(0)).count()));
        if (ready >= 0 || errno != EINTR)
            return ready > 0;
    }
}

} // namespace corvandi::harness
