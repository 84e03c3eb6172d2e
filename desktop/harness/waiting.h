#pragma once

#include <chrono>
#include <stdexcept>
#include <string>

namespace corvandi::harness {

/// The clock of all measurements here. It is CLOCK_MONOTONIC, so that times which different processes
/// took can be compared.
using Clock = std::chrono::steady_clock;

/// Something did not happen, or could not be started; the message says what.
class HarnessError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// How long to wait for something that normally takes less than a second, on a machine under load.
constexpr std::chrono::seconds patience{20};

/// Waits until the descriptor can be read; false when `deadline` passes first.
[[nodiscard]] bool waitUntilReadable(int descriptor, Clock::time_point deadline);

} // namespace corvandi::harness
