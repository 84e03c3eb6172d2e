#include "base/awaitables.h"

#include "base/error.h"

#include <QCoroTask>

#include <gtest/gtest.h>

namespace corvandi {
namespace {

QCoro::Task<> await(OneShot<int> slot, int& received)
{
    received = co_await slot;
}

QCoro::Task<> awaitFailure(OneShot<int> slot, QString& received)
{
    try {
        co_await slot;
    } catch (const Error& error) {
        received = error.description();
    }
}

TEST(OneShot, ResumesItsWaiterWithTheFirstResultAndDropsLaterOnes)
{
    const OneShot<int> slot;
    int received = 0;
    const auto task = await(slot, received);
    EXPECT_TRUE(slot.complete(1));
    EXPECT_FALSE(slot.complete(2));
    EXPECT_EQ(received, 1);
}

TEST(OneShot, AResultThatIsThereAlreadyIsTakenWithoutWaiting)
{
    const OneShot<int> slot;
    slot.complete(7);
    int received = 0;
    const auto task = await(slot, received);
    EXPECT_EQ(received, 7);
}

TEST(OneShot, AFailureIsThrownToTheWaiter)
{
    const OneShot<int> slot;
    QString received;
    const auto task = awaitFailure(slot, received);
    EXPECT_TRUE(slot.fail(std::make_exception_ptr(Error(QStringLiteral("broken")))));
    EXPECT_FALSE(slot.complete(1));
    EXPECT_EQ(received, QStringLiteral("broken"));
}

} // namespace
} // namespace corvandi
