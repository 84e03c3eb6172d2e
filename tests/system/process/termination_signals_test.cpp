#include "system/process/termination_signals.h"

#include "support/event_loop.h"

#include <gtest/gtest.h>

#include <csignal>
#include <unistd.h>

namespace corvandi::testing {
namespace {

class TerminationSignalsTest : public ::testing::TestWithParam<int> {};

TEST_P(TerminationSignalsTest, TheSignalBecomesACallFromTheEventLoop)
{
    int calls = 0;
    TerminationSignals signals;
    signals.watch([&] { ++calls; });
    // To this thread: the toolkit's own ones are older than the mask here.
    ASSERT_EQ(raise(GetParam()), 0);
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(waitUntil([&] { return calls == 1; }));
}

INSTANTIATE_TEST_SUITE_P(EachSignal, TerminationSignalsTest, ::testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST(TerminationSignals, WritingToAClosedPipeDoesNotEndTheProgram)
{
    const TerminationSignals signals;
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    close(ends[0]);
    EXPECT_EQ(write(ends[1], "x", 1), -1);
    close(ends[1]);
}

} // namespace
} // namespace corvandi::testing
