#include "platform/linux/hud_panel/compositor.h"

#include "panel_desktop.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

TEST(Compositor, IsRunningOrNotAsTheDesktopHasOne)
{
    EXPECT_EQ(isCompositorRunning(), testing::hasCompositor());
}

} // namespace
} // namespace corvandi
