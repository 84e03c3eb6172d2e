#include "conformance/user_defaults_suite.h"
#include "support/fake_user_defaults.h"

namespace corvandi::testing {
namespace {

class FakeUserDefaultsDriver : public UserDefaultsDriver {
public:
    [[nodiscard]] UserDefaults& defaults() override { return *defaults_; }
    void restart() override
    {
        auto next = std::make_unique<FakeUserDefaults>();
        next->persistent = defaults_->persistent;
        defaults_ = std::move(next);
    }

private:
    std::unique_ptr<FakeUserDefaults> defaults_ = std::make_unique<FakeUserDefaults>();
};

INSTANTIATE_TEST_SUITE_P(Fake, UserDefaultsSuite, over<FakeUserDefaultsDriver>("Fake"));

} // namespace
} // namespace corvandi::testing
