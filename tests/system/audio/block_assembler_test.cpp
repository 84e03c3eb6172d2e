#include "system/audio/pulse_recording.h"

#include <gmock/gmock.h>

#include <numeric>

namespace corvandi {
namespace {

using ::testing::ElementsAre;

std::vector<float> ramp(size_t first, size_t count)
{
    std::vector<float> samples(count);
    std::iota(samples.begin(), samples.end(), static_cast<float>(first));
    return samples;
}

class BlockAssemblerTest : public ::testing::Test {
protected:
    AudioInput::TapBlock tap()
    {
        return [this](const AudioBuffer& block) {
            lengths.push_back(block.frameLength());
            addresses.push_back(block.floatSamples().data());
            samples.insert(samples.end(), block.floatSamples().begin(), block.floatSamples().end());
        };
    }

    std::vector<uint32_t> lengths;
    std::vector<const float*> addresses;
    std::vector<float> samples;
};

TEST_F(BlockAssemblerTest, PiecesOfAnySizeBecomeBlocksOfOneSize)
{
    BlockAssembler blocks({48000, 1, SampleFormat::float32}, 4, tap());
    blocks.append(ramp(0, 3));
    EXPECT_TRUE(lengths.empty());
    blocks.append(ramp(3, 7));
    EXPECT_THAT(lengths, ElementsAre(4, 4));
    EXPECT_EQ(samples, ramp(0, 8));
}

TEST_F(BlockAssemblerTest, TheLastBlockMayBeShorter)
{
    BlockAssembler blocks({48000, 1, SampleFormat::float32}, 4, tap());
    blocks.append(ramp(0, 6));
    blocks.flush();
    blocks.flush();
    EXPECT_THAT(lengths, ElementsAre(4, 2));
    EXPECT_EQ(samples, ramp(0, 6));
}

TEST_F(BlockAssemblerTest, ABlockAfterAShortOneHasFullSizeAgain)
{
    BlockAssembler blocks({48000, 1, SampleFormat::float32}, 4, tap());
    blocks.append(ramp(0, 1));
    blocks.flush();
    blocks.append(ramp(1, 4));
    EXPECT_THAT(lengths, ElementsAre(1, 4));
    EXPECT_EQ(samples, ramp(0, 5));
}

TEST_F(BlockAssemblerTest, CountsFramesNotSamples)
{
    BlockAssembler blocks({48000, 2, SampleFormat::float32}, 4, tap());
    blocks.append(ramp(0, 10));
    blocks.flush();
    EXPECT_THAT(lengths, ElementsAre(4, 1));
    EXPECT_EQ(samples, ramp(0, 10));
}

TEST_F(BlockAssemblerTest, LostSoundBecomesSilenceOfTheSameLength)
{
    BlockAssembler blocks({48000, 1, SampleFormat::float32}, 4, tap());
    blocks.append(ramp(1, 2));
    blocks.appendSilence(5);
    blocks.append(ramp(8, 1));
    EXPECT_THAT(samples, ElementsAre(1, 2, 0, 0, 0, 0, 0, 8));
}

TEST_F(BlockAssemblerTest, UsesOneBufferForAllBlocks)
{
    BlockAssembler blocks({48000, 1, SampleFormat::float32}, 4, tap());
    blocks.append(ramp(0, 9));
    blocks.flush();
    blocks.append(ramp(0, 4));
    EXPECT_THAT(addresses, ::testing::Each(addresses.front()));
}

} // namespace
} // namespace corvandi
