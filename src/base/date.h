#pragma once

#include <chrono>

namespace corvandi {

/// A point in time of the wall clock, as the files hold it: seconds, with their fraction, since
/// 2001-01-01 00:00:00 UTC. Negative before that instant.
struct Date {
    double secondsSinceReference = 0;

    /// The same instant on the system's clock.
    [[nodiscard]] static Date fromTimePoint(std::chrono::system_clock::time_point time)
    {
        return {std::chrono::duration<double>(time.time_since_epoch()).count() - referenceInUnixTime};
    }
    [[nodiscard]] double secondsSinceUnixEpoch() const { return secondsSinceReference + referenceInUnixTime; }

    friend auto operator<=>(const Date&, const Date&) = default;

private:
    /// 2001-01-01 00:00:00 UTC in seconds since 1970-01-01 00:00:00 UTC.
    static constexpr double referenceInUnixTime = 978'307'200;
};

} // namespace corvandi
