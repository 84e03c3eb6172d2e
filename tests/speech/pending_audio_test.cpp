#include "speech/pending_audio.h"

#include "speech/sounds.h"

#include <gmock/gmock.h>

namespace corvandi::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

PendingAudio::Buffers append(PendingAudio& pending, float tag, uint32_t frames)
{
    return pending.append(PendingAudio::Buffers(1, tagged(tag, frames)));
}

std::vector<float> tagsOf(const PendingAudio::Buffers& buffers)
{
    return tags({buffers.begin(), buffers.end()});
}

TEST(PendingAudio, IsEmptyAtFirst)
{
    PendingAudio pending;
    EXPECT_EQ(pending.frames(), 0u);
    EXPECT_THAT(pending.takeAll(), IsEmpty());
}

TEST(PendingAudio, KeepsBuffersInTheOrderInWhichTheyCame)
{
    PendingAudio pending;
    EXPECT_THAT(append(pending, 1, 100), IsEmpty());
    EXPECT_THAT(append(pending, 2, 50), IsEmpty());
    EXPECT_THAT(tagsOf(pending.buffers()), ElementsAre(1, 2));
    EXPECT_EQ(pending.frames(), 150u);
}

TEST(PendingAudio, HoldsEighty4800FrameBuffersAndDropsTheOldestForTheNext)
{
    PendingAudio pending;
    for (int index = 1; index <= 80; ++index)
        EXPECT_THAT(append(pending, static_cast<float>(index), 4800), IsEmpty());
    EXPECT_EQ(pending.frames(), 384000u);

    EXPECT_THAT(tagsOf(append(pending, 81, 4800)), ElementsAre(1));
    EXPECT_EQ(pending.buffers().size(), 80u);
    EXPECT_EQ(pending.frames(), 384000u);
    EXPECT_EQ(tagsOf(pending.buffers()).front(), 2);
}

TEST(PendingAudio, DropsAsManyOldBuffersAsANewOneNeeds)
{
    PendingAudio pending;
    (void)append(pending, 1, 200000);
    (void)append(pending, 2, 100000);
    (void)append(pending, 3, 84000);
    EXPECT_THAT(tagsOf(append(pending, 4, 250000)), ElementsAre(1, 2));
    EXPECT_EQ(pending.frames(), 334000u);
}

TEST(PendingAudio, KeepsASingleBufferThatExceedsTheBoundAlone)
{
    PendingAudio pending;
    EXPECT_THAT(append(pending, 1, 500000), IsEmpty());
    EXPECT_EQ(pending.frames(), 500000u);
    EXPECT_EQ(pending.buffers().size(), 1u);
}

TEST(PendingAudio, ABufferThatExceedsTheBoundAloneDrivesOutAllOthersAndGoesWithTheNext)
{
    PendingAudio pending;
    (void)append(pending, 1, 100);
    EXPECT_THAT(tagsOf(append(pending, 2, 500000)), ElementsAre(1));
    EXPECT_THAT(tagsOf(append(pending, 3, 100)), ElementsAre(2));
    EXPECT_EQ(pending.frames(), 100u);
}

TEST(PendingAudio, TakingEverythingLeavesItEmpty)
{
    PendingAudio pending;
    (void)append(pending, 1, 100);
    (void)append(pending, 2, 100);
    EXPECT_THAT(tagsOf(pending.takeAll()), ElementsAre(1, 2));
    EXPECT_EQ(pending.frames(), 0u);
    EXPECT_THAT(pending.buffers(), IsEmpty());
}

TEST(PendingAudio, HandingBuffersInAndOutDoesNotCopyThem)
{
    PendingAudio pending;
    PendingAudio::Buffers node(1, tagged(1));
    const float* samples = node.front().floatSamples().data();
    (void)pending.append(std::move(node));
    EXPECT_EQ(pending.takeAll().front().floatSamples().data(), samples);
}

} // namespace
} // namespace corvandi::testing
