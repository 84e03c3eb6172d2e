#pragma once

#include "conformance/conformance.h"
#include "core/hud/hud_model.h"
#include "ports/hud_panel.h"

#include <chrono>
#include <cmath>

namespace corvandi::testing {

/// A desktop with a screen of at least 1280 by 800 points.
class HUDPanelDriver : public PassingTime {
public:
    [[nodiscard]] virtual HUDPanelFactory& panels() = 0;
    /// Whether a panel with this frame can be seen.
    [[nodiscard]] virtual bool isOnShow(const PanelRect& frame) = 0;
    /// How opaque the panel is, 0...1; nothing on a desktop that can't show translucency.
    [[nodiscard]] virtual std::optional<double> opacity() = 0;
};

/// The tests of a panel, for any driver that has at least what `HUDPanelDriver` has.
template<class Driver>
class HUDPanelTest : public ConformanceTest<Driver> {
protected:
    HUDPanelTest() { model.setState(HUDState::recording); }

    void present(const PanelRect& frame = lower)
    {
        panel->setFrame(frame);
        panel->setAlpha(1);
        panel->orderFront();
        EXPECT_TRUE(becomes(true, frame)) << "the panel does not show";
    }
    /// Whether the panel comes to be on show, or gone.
    [[nodiscard]] bool becomes(bool onShow, const PanelRect& frame = lower)
    {
        return this->driver.until([&] { return this->driver.isOnShow(frame) == onShow; });
    }
    /// Whether it is as opaque as this where that can be told, to the step of a platform that counts to 255.
    [[nodiscard]] bool hasOpacity(double alpha)
    {
        const double opacity = this->driver.opacity().value_or(alpha);
        return std::abs(opacity - alpha) < 1.0 / 255;
    }

    static constexpr PanelRect lower{490, 646, 300, 64};
    static constexpr PanelRect upper{400, 450, 300, 64};

    HUDModel model;
    std::unique_ptr<HUDPanel> panel = this->driver.panels().create(model);
};

class HUDPanelSuite : public HUDPanelTest<HUDPanelDriver> {
protected:
    static constexpr std::chrono::milliseconds longFade{2000};
};

TEST_P(HUDPanelSuite, TheMainScreenHasRoom)
{
    const auto free = panel->mainScreenVisibleFrame();
    ASSERT_TRUE(free);
    EXPECT_GT(free->width, 0);
    EXPECT_GT(free->height, 0);
}

TEST_P(HUDPanelSuite, ANewPanelIsNotShown)
{
    panel->setFrame(lower);
    panel->setAlpha(1);
    driver.settle();
    EXPECT_FALSE(driver.isOnShow(lower));
}

TEST_P(HUDPanelSuite, OrderedFrontItStandsInItsFrame)
{
    present();
    EXPECT_FALSE(driver.isOnShow(upper));
}

TEST_P(HUDPanelSuite, ItMovesWhileItIsShown)
{
    present();
    panel->setFrame(upper);
    EXPECT_TRUE(becomes(true, upper));
    EXPECT_TRUE(becomes(false, lower));
}

TEST_P(HUDPanelSuite, OrderedOutItIsGoneAndCanBeShownAgain)
{
    present();
    panel->orderOut();
    EXPECT_TRUE(becomes(false));
    present();
    panel->orderOut();
    EXPECT_TRUE(becomes(false));
}

TEST_P(HUDPanelSuite, AFrameThatIsSetWhileItIsOrderedOutHoldsWhenItIsShown)
{
    present();
    panel->orderOut();
    EXPECT_TRUE(becomes(false));
    present(upper);
    EXPECT_FALSE(driver.isOnShow(lower));
}

TEST_P(HUDPanelSuite, AFadeEndsAtItsOpacity)
{
    panel->setFrame(lower);
    panel->setAlpha(0);
    panel->orderFront();
    panel->fadeTo(1, std::chrono::milliseconds(140));
    EXPECT_TRUE(driver.until([this] { return hasOpacity(1); }));
    EXPECT_TRUE(becomes(true));
    panel->fadeTo(0.5, std::chrono::milliseconds(140));
    EXPECT_TRUE(driver.until([this] { return hasOpacity(0.5); }));
    EXPECT_TRUE(becomes(true));
}

TEST_P(HUDPanelSuite, SettingTheOpacityEndsAFade)
{
    present();
    panel->fadeTo(0, longFade);
    driver.settle();
    panel->setAlpha(1);
    driver.settle();
    EXPECT_TRUE(hasOpacity(1));
    EXPECT_TRUE(driver.isOnShow(lower));
}

TEST_P(HUDPanelSuite, AnotherFadeTakesThePlaceOfTheFirst)
{
    present();
    panel->fadeTo(0, longFade);
    driver.settle();
    panel->fadeTo(1, std::chrono::milliseconds(20));
    EXPECT_TRUE(driver.until([this] { return hasOpacity(1); }));
    driver.settle();
    EXPECT_TRUE(hasOpacity(1));
    EXPECT_TRUE(driver.isOnShow(lower));
}

TEST_P(HUDPanelSuite, OrderedOutDuringAFadeItStaysAway)
{
    present();
    panel->fadeTo(0.5, longFade);
    driver.settle();
    panel->orderOut();
    EXPECT_TRUE(becomes(false));
    driver.settle();
    EXPECT_FALSE(driver.isOnShow(lower));
    present();
    EXPECT_TRUE(hasOpacity(1));
    EXPECT_TRUE(driver.isOnShow(lower));
}

TEST_P(HUDPanelSuite, ADestroyedPanelIsGone)
{
    present();
    panel.reset();
    EXPECT_TRUE(becomes(false));
}

} // namespace corvandi::testing
