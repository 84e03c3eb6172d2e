#include "support/event_loop.h"
#include "system/accessibility/focus_fixture.h"

namespace corvandi::testing {
namespace {

class WithoutBusTest : public FocusTest {};

TEST_F(WithoutBusTest, EverythingIsUnknownAndTheLogSaysSoOnce)
{
    const auto text = startQtFields(QStringLiteral("text"));
    ASSERT_TRUE(waitUntil([&] { return log.contains(QStringLiteral("accessibility bus")); }));
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(inspector.currentTarget(), FocusTarget::unknown);
        runFor(std::chrono::milliseconds(5));
    }
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(WithoutBusTest, ARefreshEndsAllTheSame)
{
    const auto text = startQtFields(QStringLiteral("text"));
    EXPECT_TRUE(desktop.isRefreshed());
}

} // namespace
} // namespace corvandi::testing
