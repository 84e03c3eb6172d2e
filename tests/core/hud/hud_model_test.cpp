#include "core/hud/hud_model.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

TEST(HUDModel, BeginsWithRestingBarsAndTheProcessingFace)
{
    const HUDModel model;
    EXPECT_EQ(model.bars(), std::vector<double>(28, 0.05));
    EXPECT_EQ(model.elapsed(), QStringLiteral("0:00"));
    EXPECT_TRUE(model.statusText().isEmpty());
    EXPECT_EQ(model.state(), HUDState::processing);
}

TEST(HUDModel, AnnouncesTheChangeOfEveryField)
{
    HUDModel model;
    int notices = 0;
    QObject::connect(&model, &HUDModel::changed, [&] { ++notices; });
    model.setBars({0.5});
    EXPECT_EQ(notices, 1);
    model.setElapsed(QStringLiteral("1:00"));
    EXPECT_EQ(notices, 2);
    model.setStatusText(QStringLiteral("Transcribing"));
    EXPECT_EQ(notices, 3);
    model.setState(HUDState::notice);
    EXPECT_EQ(notices, 4);
}

TEST(HUDModel, ObserversFindTheNewValue)
{
    HUDModel model;
    HUDState seen = model.state();
    QObject::connect(&model, &HUDModel::changed, [&] { seen = model.state(); });
    model.setState(HUDState::error);
    EXPECT_EQ(seen, HUDState::error);
}

} // namespace
} // namespace corvandi
