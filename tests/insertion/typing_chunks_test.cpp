#include "insertion/typing_chunks.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

std::vector<size_t> lengths(const std::u16string& text)
{
    std::vector<size_t> result;
    for (const std::u16string& chunk : typingChunks(text))
        result.push_back(chunk.size());
    return result;
}

std::u16string joined(const std::u16string& text)
{
    std::u16string result;
    for (const std::u16string& chunk : typingChunks(text))
        result += chunk;
    return result;
}

const std::u16string emoji = u"\U0001F600";

TEST(TypingChunks, FortyFiveUnitsMakeChunksOfTwentyTwentyAndFive)
{
    EXPECT_EQ(lengths(std::u16string(45, u'a')), (std::vector<size_t>{20, 20, 5}));
}

TEST(TypingChunks, AnEmptyTextHasNoChunks)
{
    EXPECT_TRUE(typingChunks(u"").empty());
}

TEST(TypingChunks, TwentyUnitsFitOneChunkAndTwentyOneDoNot)
{
    EXPECT_EQ(lengths(std::u16string(20, u'a')), (std::vector<size_t>{20}));
    EXPECT_EQ(lengths(std::u16string(21, u'a')), (std::vector<size_t>{20, 1}));
}

TEST(TypingChunks, AnEmojiThatWouldBeSplitTravelsWholeInTheNextChunk)
{
    const std::u16string text = std::u16string(19, u'a') + emoji + u"b";
    EXPECT_EQ(lengths(text), (std::vector<size_t>{19, 3}));
    EXPECT_EQ(joined(text), text);
}

TEST(TypingChunks, AnEmojiThatEndsExactlyAtTheLimitStaysInItsChunk)
{
    EXPECT_EQ(lengths(std::u16string(18, u'a') + emoji + u"b"), (std::vector<size_t>{20, 1}));
}

TEST(TypingChunks, ALoneHighSurrogateAtTheEndOfTheTextIsKept)
{
    const std::u16string text = std::u16string(19, u'a') + char16_t(0xD83D);
    EXPECT_EQ(lengths(text), (std::vector<size_t>{20}));
}

TEST(TypingChunks, ARunOfLoneHighSurrogatesLosesNothing)
{
    const std::u16string text(45, char16_t(0xD83D));
    EXPECT_EQ(joined(text), text);
    EXPECT_EQ(lengths(text).front(), 19U);
}

TEST(TypingChunks, TheBoundsOfTheHighSurrogatesCount)
{
    EXPECT_EQ(lengths(std::u16string(19, u'a') + char16_t(0xD800) + u"b").front(), 19U);
    EXPECT_EQ(lengths(std::u16string(19, u'a') + char16_t(0xDBFF) + u"b").front(), 19U);
    EXPECT_EQ(lengths(std::u16string(19, u'a') + char16_t(0xDC00) + u"b").front(), 20U);
    EXPECT_EQ(lengths(std::u16string(19, u'a') + char16_t(0xD7FF) + u"b").front(), 20U);
}

} // namespace
} // namespace corvandi
