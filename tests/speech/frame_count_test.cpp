#include "speech/frame_count.h"

#include <gtest/gtest.h>

#include <limits>

namespace corvandi::testing {
namespace {

constexpr uint32_t largest = std::numeric_limits<uint32_t>::max();

TEST(FrameCount, DropsTheFraction)
{
    EXPECT_EQ(wholeFrames(0.999), 0u);
    EXPECT_EQ(wholeFrames(682.67), 682u);
    EXPECT_EQ(wholeFrames(4294967295.9), largest);
}

TEST(FrameCount, AddsUpToTheLargestCount)
{
    EXPECT_EQ(addFrames(1706, 342), 2048u);
    EXPECT_EQ(addFrames(largest - 1, 1), largest);
}

TEST(FrameCountDeathTest, AValueThatDoesNotFitEndsTheProcess)
{
    EXPECT_DEATH((void)wholeFrames(4294967296.0), "don't fit into a frame count");
    EXPECT_DEATH((void)wholeFrames(std::numeric_limits<double>::infinity()), "don't fit");
    EXPECT_DEATH((void)wholeFrames(std::numeric_limits<double>::quiet_NaN()), "don't fit");
    EXPECT_DEATH((void)wholeFrames(-1), "don't fit");
}

TEST(FrameCountDeathTest, ASumThatDoesNotFitEndsTheProcess)
{
    EXPECT_DEATH((void)addFrames(largest, 1), "don't fit into a frame count");
}

} // namespace
} // namespace corvandi::testing
