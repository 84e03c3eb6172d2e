#include "system/process/idle_activation_policy.h"

#include <QPixmapCache>

#include <gtest/gtest.h>

namespace corvandi {
namespace {

const QString picture = QStringLiteral("picture");

class IdleActivationPolicyTest : public ::testing::Test {
protected:
    IdleActivationPolicyTest()
    {
        QPixmap drawn(16, 16);
        drawn.fill(Qt::red);
        EXPECT_TRUE(QPixmapCache::insert(picture, drawn));
    }
    [[nodiscard]] static bool isKept()
    {
        QPixmap found;
        return QPixmapCache::find(picture, &found);
    }

    IdleActivationPolicy policy;
};

TEST_F(IdleActivationPolicyTest, AnApplicationWithWindowsKeepsItsPictures)
{
    policy.set(ActivationMode::regular);
    EXPECT_TRUE(isKept());
}

TEST_F(IdleActivationPolicyTest, AnAgentGivesThemBack)
{
    policy.set(ActivationMode::accessory);
    EXPECT_FALSE(isKept());
}

} // namespace
} // namespace corvandi
