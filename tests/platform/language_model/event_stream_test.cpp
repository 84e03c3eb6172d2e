#include "platform/linux/language_model/event_stream.h"

#include <gmock/gmock.h>

#include <vector>

namespace corvandi {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class EventStreamTest : public ::testing::Test {
protected:
    std::vector<QByteArray> events;
    EventStream stream{[this](const QByteArray& data) { events.push_back(data); }};
};

TEST_F(EventStreamTest, AnEmptyLineEndsAnEvent)
{
    stream.feed("data: one\n");
    EXPECT_THAT(events, IsEmpty());
    stream.feed("\ndata: two\n\n");
    EXPECT_THAT(events, ElementsAre("one", "two"));
}

TEST_F(EventStreamTest, LinesMayEndInAnyWay)
{
    stream.feed("data: one\r\n\r\ndata: two\r\rdata: three\n\n");
    EXPECT_THAT(events, ElementsAre("one", "two", "three"));
}

TEST_F(EventStreamTest, ALineEndMayBeCutInTwo)
{
    stream.feed("data: one\r");
    stream.feed("\n\r");
    stream.feed("\ndata: two\r\n\r\n");
    EXPECT_THAT(events, ElementsAre("one", "two"));
}

TEST_F(EventStreamTest, SeveralLinesOfDataAreOneEvent)
{
    stream.feed("data: one\ndata: two\n\n");
    EXPECT_THAT(events, ElementsAre("one\ntwo"));
}

TEST_F(EventStreamTest, OneSpaceBehindTheColonIsNoData)
{
    stream.feed("data:one\n\ndata:  two\n\ndata\n\n");
    EXPECT_THAT(events, ElementsAre("one", " two", ""));
}

TEST_F(EventStreamTest, CommentsAndOtherFieldsAreIgnored)
{
    stream.feed(": ping\n\nevent: message\nid: 7\ndatas: no\ndata: one\n\n");
    EXPECT_THAT(events, ElementsAre("one"));
}

TEST_F(EventStreamTest, TheLastEventNeedsNoEmptyLine)
{
    stream.feed("data: one");
    stream.finish();
    EXPECT_THAT(events, ElementsAre("one"));
}

TEST_F(EventStreamTest, WhatWaitsForItsEndIsCounted)
{
    stream.feed("data: one\ndat");
    EXPECT_EQ(stream.waitingBytes(), 6);
    stream.feed("a: x\n\n");
    EXPECT_EQ(stream.waitingBytes(), 0);
}

} // namespace
} // namespace corvandi
