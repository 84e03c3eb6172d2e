#include "conformance/hud_panel_suite.h"
#include "conformance/virtual_time.h"
#include "support/fake_hud_panel.h"

namespace corvandi::testing {
namespace {

class FakeHUDPanelDriver : public OnVirtualTime<HUDPanelDriver> {
public:
    [[nodiscard]] HUDPanelFactory& panels() override { return panels_; }
    [[nodiscard]] bool isOnShow(const PanelRect& frame) override
    {
        return panels_.isVisible && panels_.alpha > 0 && panels_.frame == frame;
    }
    [[nodiscard]] std::optional<double> opacity() override { return panels_.alpha; }

private:
    FakeHUDPanelFactory panels_;
};

INSTANTIATE_TEST_SUITE_P(Fake, HUDPanelSuite, over<FakeHUDPanelDriver>("Fake"));

} // namespace
} // namespace corvandi::testing
