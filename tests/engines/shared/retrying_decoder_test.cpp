#include "fake_utterance_decoder.h"

#include <gtest/gtest.h>

namespace corvandi::testing {
namespace {

class RetryingDecoderTest : public ::testing::Test {
protected:
    /// Says `samples` in pieces and tells what was understood.
    QString utterance(size_t samples)
    {
        decoder.beginUtterance();
        for (size_t at = 0; at < samples; at += 100)
            decoder.feed(std::vector<int16_t>(100));
        return decoder.endUtterance();
    }

    FakeUtteranceDecoder first;
    FakeUtteranceDecoder second;
    std::vector<QString> failures;
    std::atomic<bool> isCancelled = false;
    RetryingDecoder decoder{first,
                            [this](const QString& failure) -> UtteranceDecoder& {
                                failures.push_back(failure);
                                return second;
                            },
                            isCancelled};
};

TEST_F(RetryingDecoderTest, WithoutAFailureItIsTheDecoder)
{
    decoder.beginStream();
    EXPECT_EQ(utterance(500), QStringLiteral("500"));
    EXPECT_EQ(first.calls, "stream begin end ");
    EXPECT_TRUE(failures.empty());
}

TEST_F(RetryingDecoderTest, AFailureAmidAnUtteranceIsMadeGoodFromItsBeginning)
{
    decoder.beginStream();
    EXPECT_EQ(utterance(500), QStringLiteral("500"));
    first.failsAt = 2500;
    EXPECT_EQ(utterance(4000), QStringLiteral("4000"));
    EXPECT_EQ(second.calls, "stream begin end ");
    EXPECT_EQ(failures, std::vector<QString>{QStringLiteral("decoder lost")});
}

TEST_F(RetryingDecoderTest, AFailureAtTheEndOfAnUtteranceIsMadeGood)
{
    first.failsAtEnd = true;
    EXPECT_EQ(utterance(500), QStringLiteral("500"));
    EXPECT_EQ(second.calls, "stream begin end ");
}

TEST_F(RetryingDecoderTest, TheUtterancesBeforeAreNotRepeated)
{
    EXPECT_EQ(utterance(500), QStringLiteral("500"));
    first.failsAt = 100;
    EXPECT_EQ(utterance(700), QStringLiteral("700"));
    EXPECT_EQ(second.heard, 700U);
}

TEST_F(RetryingDecoderTest, ASecondFailureIsThrown)
{
    first.failsAtEnd = true;
    EXPECT_EQ(utterance(500), QStringLiteral("500"));
    second.failsAtEnd = true;
    EXPECT_THROW((void)utterance(500), Error);
    EXPECT_EQ(failures.size(), 1U);
}

TEST_F(RetryingDecoderTest, AFailureOfTheReplacementIsThrown)
{
    first.failsAtEnd = true;
    second.failsAt = 300;
    EXPECT_THROW((void)utterance(500), Error);
}

TEST_F(RetryingDecoderTest, ACancelledDictationIsNotTriedAgain)
{
    isCancelled = true;
    first.failsAtEnd = true;
    EXPECT_THROW((void)utterance(500), Error);
    EXPECT_TRUE(failures.empty());
}

} // namespace
} // namespace corvandi::testing
