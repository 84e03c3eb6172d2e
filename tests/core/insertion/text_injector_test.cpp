#include "core/insertion/text_injector.h"
#include "support/fake_keyboard.h"
#include "support/fake_pasteboard.h"
#include "support/virtual_queue.h"

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

namespace corvandi::testing {
namespace {

using namespace std::chrono_literals;

const QString hello = QStringLiteral("Hello");

QCoro::Task<> store(QCoro::Task<bool> task, std::optional<bool>& result)
{
    result = co_await task;
}

class TextInjectorTest : public ::testing::Test {
protected:
    bool insert(const QString& text, InsertionMethod method)
    {
        std::optional<bool> result;
        const auto task = store(injector.insert(text, method), result);
        EXPECT_TRUE(result.has_value());
        return result.value_or(false);
    }
    bool pasteShortcutWasPosted() const
    {
        return keyboard.posted.size() == 2 &&
               keyboard.posted[0] == SyntheticKeyEvent{9, KeyDirection::down, 0x100000, {}} &&
               keyboard.posted[1] == SyntheticKeyEvent{9, KeyDirection::up, 0x100000, {}};
    }

    VirtualQueue queue;
    FakeKeyboard keyboard;
    FakePasteboard pasteboard;
    TextInjector injector{keyboard, pasteboard, queue};
};

TEST_F(TextInjectorTest, AnEmptyTextIsNotInsertedAndPostsNothing)
{
    EXPECT_FALSE(insert(QString(), InsertionMethod::type));
    EXPECT_FALSE(insert(QString(), InsertionMethod::paste));
    EXPECT_TRUE(keyboard.posted.empty());
    EXPECT_EQ(pasteboard.changes, 0);
}

/// A text of two events that is being typed.
class LongTextTest : public TextInjectorTest {
protected:
    const QString text = QString(25, QLatin1Char('a'));
    const std::u16string twenty = std::u16string(20, u'a');
    const std::u16string five = std::u16string(5, u'a');
    const std::vector<SyntheticKeyEvent> firstPair{{0, KeyDirection::down, 0, twenty},
                                                   {0, KeyDirection::up, 0, twenty}};
    const std::vector<SyntheticKeyEvent> bothPairs{{0, KeyDirection::down, 0, twenty},
                                                   {0, KeyDirection::up, 0, twenty},
                                                   {0, KeyDirection::down, 0, five},
                                                   {0, KeyDirection::up, 0, five}};
    std::optional<bool> result;
    const QCoro::Task<> task = store(injector.insert(text, InsertionMethod::type), result);
};

TEST_F(LongTextTest, IsPostedAsAKeyDownAndAKeyUpForEachChunkWithTimeForOtherWorkInBetween)
{
    EXPECT_EQ(keyboard.posted, firstPair);
    EXPECT_FALSE(result);
    queue.drain();
    EXPECT_EQ(keyboard.posted, bothPairs);
    EXPECT_EQ(result, true);
    EXPECT_EQ(keyboard.sources, 0);
}

TEST_F(LongTextTest, IsPostedToItsEndBeforeAnotherOne)
{
    EXPECT_TRUE(insert(QStringLiteral("b"), InsertionMethod::type));
    EXPECT_EQ(keyboard.typed(), text + QLatin1Char('b'));
    queue.drain();
    EXPECT_EQ(keyboard.typed(), text + QLatin1Char('b'));
    EXPECT_EQ(result, true);
}

TEST_F(LongTextTest, IsPostedToItsEndAtTheEndOfTheProgram)
{
    injector.finishNow();
    EXPECT_EQ(keyboard.posted, bothPairs);
    EXPECT_EQ(keyboard.sources, 0);
    queue.drain();
    EXPECT_EQ(keyboard.posted, bothPairs);
    EXPECT_EQ(result, true);
}

TEST_F(LongTextTest, IsPastedWholeWhenItsEventsCannotBeMadeAnyMore)
{
    keyboard.eventsLeft = 1;
    queue.drain();
    EXPECT_EQ(pasteboard.text(), text);
    EXPECT_EQ(keyboard.posted, firstPair);
    EXPECT_EQ(result, false);
    EXPECT_EQ(keyboard.sources, 0);
}

TEST_F(TextInjectorTest, TypingLeavesTheClipboardAlone)
{
    EXPECT_TRUE(insert(hello, InsertionMethod::type));
    EXPECT_EQ(pasteboard.changes, 0);
    EXPECT_EQ(pasteboard.reads, 0);
}

TEST_F(TextInjectorTest, TypingWithoutAnEventSourceFallsBackToPasting)
{
    keyboard.refusesText = true;
    EXPECT_TRUE(insert(hello, InsertionMethod::type));
    EXPECT_TRUE(pasteShortcutWasPosted());
    EXPECT_EQ(pasteboard.text(), hello);
}

TEST_F(TextInjectorTest, TypingThatCannotMakeItsEventsFallsBackToPasting)
{
    keyboard.eventsLeft = 0;
    EXPECT_FALSE(insert(hello, InsertionMethod::type));
    EXPECT_EQ(pasteboard.text(), hello);
    EXPECT_TRUE(keyboard.posted.empty());
}

TEST_F(TextInjectorTest, PastingSetsTheTextConcealedAndPostsThePasteShortcut)
{
    EXPECT_TRUE(insert(hello, InsertionMethod::paste));
    EXPECT_EQ(pasteboard.text(), hello);
    EXPECT_TRUE(pasteboard.isConcealed());
    EXPECT_EQ(pasteboard.content.at(pasteboard_type::concealed), QString());
    EXPECT_TRUE(pasteShortcutWasPosted());
}

TEST_F(TextInjectorTest, TheTextIsOnTheClipboardBeforeTheShortcutIsPosted)
{
    std::optional<QString> atPost;
    keyboard.onPost = [&] {
        if (!atPost)
            atPost = pasteboard.text();
    };
    EXPECT_TRUE(insert(hello, InsertionMethod::paste));
    EXPECT_EQ(atPost, hello);
}

TEST_F(TextInjectorTest, TheClipboardIsGivenBackAfterOneSecondAndNotBefore)
{
    pasteboard.copyFromOutside(QStringLiteral("abc"));
    EXPECT_TRUE(insert(hello, InsertionMethod::paste));
    queue.advance(999ms);
    EXPECT_EQ(pasteboard.text(), hello);
    queue.advance(1ms);
    EXPECT_EQ(pasteboard.text(), QStringLiteral("abc"));
    EXPECT_FALSE(pasteboard.isConcealed());
}

TEST_F(TextInjectorTest, WhatSomebodyCopiedWithinTheSecondStays)
{
    pasteboard.copyFromOutside(QStringLiteral("abc"));
    EXPECT_TRUE(insert(hello, InsertionMethod::paste));
    queue.advance(500ms);
    pasteboard.copyFromOutside(QStringLiteral("new"));
    queue.advance(1s);
    EXPECT_EQ(pasteboard.text(), QStringLiteral("new"));
}

TEST_F(TextInjectorTest, AClipboardWithoutTextIsEmptyAfterwards)
{
    EXPECT_TRUE(insert(hello, InsertionMethod::paste));
    queue.advance(1s);
    EXPECT_TRUE(pasteboard.content.empty());
}

TEST_F(TextInjectorTest, PastingTwiceWithinTheSecondStillGivesBackWhatThePersonHad)
{
    pasteboard.copyFromOutside(QStringLiteral("abc"));
    EXPECT_TRUE(insert(hello, InsertionMethod::paste));
    queue.advance(500ms);
    EXPECT_TRUE(insert(QStringLiteral("again"), InsertionMethod::paste));
    queue.advance(999ms);
    EXPECT_EQ(pasteboard.text(), QStringLiteral("again"));
    queue.advance(1ms);
    EXPECT_EQ(pasteboard.text(), QStringLiteral("abc"));
}

TEST_F(TextInjectorTest, APasteAfterSomebodyCopiedGivesThatCopyBack)
{
    pasteboard.copyFromOutside(QStringLiteral("abc"));
    EXPECT_TRUE(insert(hello, InsertionMethod::paste));
    pasteboard.copyFromOutside(QStringLiteral("new"));
    EXPECT_TRUE(insert(QStringLiteral("again"), InsertionMethod::paste));
    queue.advance(1s);
    EXPECT_EQ(pasteboard.text(), QStringLiteral("new"));
}

TEST_F(TextInjectorTest, PastingOntoARefusingClipboardFallsBackToTypingAndRestoresNothing)
{
    pasteboard.acceptsText = false;
    EXPECT_TRUE(insert(hello, InsertionMethod::paste));
    EXPECT_EQ(keyboard.typed(), hello);
    EXPECT_EQ(queue.timerCount(), 0U);
}

TEST_F(TextInjectorTest, WithoutAnyEventSourceInsertionFailsAndTheClipboardKeepsTheText)
{
    keyboard.hasSources = false;
    EXPECT_FALSE(insert(hello, InsertionMethod::paste));
    EXPECT_EQ(pasteboard.text(), hello);
    EXPECT_EQ(queue.timerCount(), 0U);
    EXPECT_FALSE(insert(hello, InsertionMethod::type));
}

TEST_F(TextInjectorTest, AtTheEndOfTheProgramTheClipboardIsGivenBackAtOnce)
{
    pasteboard.copyFromOutside(QStringLiteral("abc"));
    EXPECT_TRUE(insert(hello, InsertionMethod::paste));
    injector.finishNow();
    EXPECT_EQ(pasteboard.text(), QStringLiteral("abc"));
    EXPECT_EQ(queue.timerCount(), 0U);
    injector.finishNow();
    EXPECT_EQ(pasteboard.text(), QStringLiteral("abc"));
}

} // namespace
} // namespace corvandi::testing
