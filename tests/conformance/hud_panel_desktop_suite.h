#pragma once

#include "conformance/hud_panel_suite.h"

#include <QByteArray>

namespace corvandi::testing {

/// The same with an application's window beneath the panel, which has the focus.
class HUDPanelDesktopDriver : public HUDPanelDriver {
public:
    [[nodiscard]] virtual bool hasApplicationTheFocus() = 0;
    /// Clicks into the middle of the frame with the mouse.
    virtual void click(const PanelRect& frame) = 0;
    [[nodiscard]] virtual int clicksOfTheApplication() = 0;
    /// Raises the application's window; false where nobody keeps windows in order.
    [[nodiscard]] virtual bool raiseTheApplication() = 0;
    /// What the screen shows in this frame.
    [[nodiscard]] virtual QByteArray picture(const PanelRect& frame) = 0;
};

/// What only a desktop can tell about a panel. For adapters.
class HUDPanelDesktopSuite : public HUDPanelTest<HUDPanelDesktopDriver> {
protected:
    /// The picture, once it stays the same.
    [[nodiscard]] QByteArray pictureAtRest()
    {
        QByteArray last;
        EXPECT_TRUE(driver.until([&] {
            driver.settle();
            const QByteArray now = driver.picture(lower);
            return std::exchange(last, now) == now;
        }));
        return last;
    }
};

TEST_P(HUDPanelDesktopSuite, TheApplicationKeepsTheFocus)
{
    ASSERT_TRUE(driver.hasApplicationTheFocus());
    for (int round = 0; round < 3; ++round) {
        present();
        driver.settle();
        EXPECT_TRUE(driver.hasApplicationTheFocus());
        panel->orderOut();
        ASSERT_TRUE(becomes(false));
        EXPECT_TRUE(driver.hasApplicationTheFocus());
    }
}

TEST_P(HUDPanelDesktopSuite, ClicksGoToTheApplicationBeneath)
{
    present();
    driver.click(lower);
    EXPECT_TRUE(driver.until([this] { return driver.clicksOfTheApplication() == 1; }));
    EXPECT_TRUE(driver.hasApplicationTheFocus());
}

TEST_P(HUDPanelDesktopSuite, ItStaysAboveAWindowThatIsRaised)
{
    present();
    if (!driver.raiseTheApplication())
        GTEST_SKIP() << "nobody keeps windows in order here";
    driver.settle();
    EXPECT_TRUE(driver.isOnShow(lower));
}

TEST_P(HUDPanelDesktopSuite, ItDrawsWhatTheModelShowsByItself)
{
    model.setState(HUDState::notice);
    model.setStatusText(QStringLiteral("first"));
    present();
    const QByteArray before = pictureAtRest();
    model.setStatusText(QStringLiteral("second one"));
    EXPECT_TRUE(driver.until([&] { return driver.picture(lower) != before; }));
}

TEST_P(HUDPanelDesktopSuite, WhatTheModelHasBecomeMeanwhileIsDrawnWhenItIsShownAgain)
{
    model.setState(HUDState::notice);
    model.setStatusText(QStringLiteral("first"));
    present();
    const QByteArray before = pictureAtRest();
    panel->orderOut();
    EXPECT_TRUE(becomes(false));
    model.setStatusText(QStringLiteral("second one"));
    present();
    const QByteArray second = pictureAtRest();
    EXPECT_NE(second, before);
}

} // namespace corvandi::testing
