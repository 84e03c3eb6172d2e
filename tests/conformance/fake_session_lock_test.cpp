#include "conformance/session_lock_suite.h"
#include "conformance/virtual_time.h"
#include "support/fake_session_lock.h"

namespace corvandi::testing {
namespace {

class FakeSessionLockDriver : public OnVirtualTime<SessionLockDriver> {
public:
    [[nodiscard]] SessionLock& sessionLock() override { return sessionLock_; }
    void lock() override { sessionLock_.set(true); }
    void unlock() override { sessionLock_.set(false); }

private:
    FakeSessionLock sessionLock_;
};

INSTANTIATE_TEST_SUITE_P(Fake, SessionLockSuite, over<FakeSessionLockDriver>("Fake"));

} // namespace
} // namespace corvandi::testing
