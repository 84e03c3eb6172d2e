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

QCoro::Task<> store(QCoro::Task<Insertion> task, std::optional<Insertion>& result)
{
    result = co_await task;
}

class TextInjectorTest : public ::testing::Test {
protected:
    [[nodiscard]] QCoro::Task<> begin(const QString& text, InsertionMethod method)
    {
        return store(injector.insert(text, method,
                                     [this] {
                                         ++asked;
                                         return postingsAllowed-- > 0;
                                     }),
                     result);
    }
    /// Whether the whole text was inserted, at once.
    bool insert(const QString& text, InsertionMethod method)
    {
        result.reset();
        const auto task = begin(text, method);
        EXPECT_TRUE(result.has_value());
        return ended(Insertion::Outcome::inserted);
    }
    [[nodiscard]] bool ended(Insertion::Outcome outcome) const
    {
        return result && result->outcome == outcome;
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
    std::optional<Insertion> result;
    /// How often the gate is found open.
    int postingsAllowed = 1000;
    int asked = 0;
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
    const QCoro::Task<> task = begin(text, InsertionMethod::type);
};

TEST_F(LongTextTest, IsPostedAsAKeyDownAndAKeyUpForEachChunkWithTimeForOtherWorkInBetween)
{
    EXPECT_EQ(keyboard.posted, firstPair);
    EXPECT_FALSE(result);
    queue.drain();
    EXPECT_EQ(keyboard.posted, bothPairs);
    EXPECT_TRUE(ended(Insertion::Outcome::inserted));
    EXPECT_EQ(keyboard.sources, 0);
}

TEST_F(LongTextTest, IsPostedToItsEndInOneTurnAtTheEndOfTheProgram)
{
    injector.hurry();
    queue.drain();
    EXPECT_EQ(keyboard.posted, bothPairs);
    EXPECT_TRUE(ended(Insertion::Outcome::inserted));
}

TEST_F(LongTextTest, IsNotFollowedByTheRestWhenTheGateClosesOnTheWay)
{
    postingsAllowed = 0;
    queue.drain();
    EXPECT_EQ(keyboard.posted, firstPair);
    EXPECT_TRUE(ended(Insertion::Outcome::stopped));
    EXPECT_EQ(result->rest, QStringLiteral("aaaaa"));
    EXPECT_EQ(keyboard.sources, 0);
}

TEST_F(TextInjectorTest, AHurriedTextIsPostedWithoutAnyTurnForOtherWork)
{
    injector.hurry();
    EXPECT_TRUE(insert(QString(100, QLatin1Char('a')), InsertionMethod::type));
    EXPECT_EQ(keyboard.posted.size(), 10U);
}

TEST_F(TextInjectorTest, TheGateIsAskedBeforeEachChunk)
{
    injector.hurry();
    EXPECT_TRUE(insert(QString(100, QLatin1Char('a')), InsertionMethod::type));
    EXPECT_EQ(asked, 5);
}

TEST_F(TextInjectorTest, NothingIsTypedThroughAClosedGate)
{
    postingsAllowed = 0;
    EXPECT_FALSE(insert(hello, InsertionMethod::type));
    EXPECT_TRUE(ended(Insertion::Outcome::stopped));
    EXPECT_EQ(result->rest, hello);
    EXPECT_TRUE(keyboard.posted.empty());
    EXPECT_EQ(pasteboard.changes, 0);
}

TEST_F(TextInjectorTest, NothingIsPastedThroughAGateThatClosedWhileTheClipboardWasRead)
{
    postingsAllowed = 0;
    EXPECT_FALSE(insert(hello, InsertionMethod::paste));
    EXPECT_TRUE(ended(Insertion::Outcome::stopped));
    EXPECT_EQ(result->rest, hello);
    EXPECT_TRUE(keyboard.posted.empty());
    EXPECT_EQ(pasteboard.reads, 1);
    EXPECT_EQ(pasteboard.changes, 0);
}

TEST_F(LongTextTest, IsPastedWholeWhenItsEventsCannotBeMadeAnyMore)
{
    keyboard.eventsLeft = 1;
    queue.drain();
    EXPECT_EQ(pasteboard.text(), text);
    EXPECT_EQ(keyboard.posted, firstPair);
    EXPECT_TRUE(ended(Insertion::Outcome::failed));
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
    EXPECT_TRUE(pasteboard.isMarked());
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
    EXPECT_FALSE(pasteboard.isMarked());
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

TEST_F(TextInjectorTest, ASecretComesBackAsASecret)
{
    pasteboard.takeOverFromOutside(
        {{pasteboard_type::string, QStringLiteral("abc")}, {pasteboard_type::concealed, QString()}});
    EXPECT_TRUE(insert(hello, InsertionMethod::paste));
    queue.advance(1s);
    EXPECT_EQ(pasteboard.text(), QStringLiteral("abc"));
    EXPECT_TRUE(pasteboard.isMarked());
}

TEST_F(TextInjectorTest, AClipboardManagerThatTakesOurTextOverIsNoUserWhoCopies)
{
    pasteboard.copyFromOutside(QStringLiteral("abc"));
    EXPECT_TRUE(insert(hello, InsertionMethod::paste));
    queue.advance(500ms);
    pasteboard.copyFromOutside(hello);
    queue.advance(500ms);
    EXPECT_EQ(pasteboard.text(), QStringLiteral("abc"));
    EXPECT_TRUE(injector.clipboardReturned().isReady());
}

TEST_F(TextInjectorTest, WhatAClipboardManagerHasTakenOverIsNotWhatThePersonHad)
{
    pasteboard.copyFromOutside(QStringLiteral("abc"));
    EXPECT_TRUE(insert(hello, InsertionMethod::paste));
    pasteboard.copyFromOutside(hello);
    EXPECT_TRUE(insert(QStringLiteral("again"), InsertionMethod::paste));
    queue.advance(1s);
    EXPECT_EQ(pasteboard.text(), QStringLiteral("abc"));
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

TEST_F(TextInjectorTest, TheClipboardCanBeGivenBackBeforeItsSecondIsOver)
{
    pasteboard.copyFromOutside(QStringLiteral("abc"));
    EXPECT_TRUE(insert(hello, InsertionMethod::paste));
    injector.returnClipboard();
    EXPECT_EQ(pasteboard.text(), QStringLiteral("abc"));
    EXPECT_EQ(queue.timerCount(), 0U);
    injector.returnClipboard();
    EXPECT_EQ(pasteboard.text(), QStringLiteral("abc"));
}

TEST_F(TextInjectorTest, WhoWaitsForTheClipboardGoesOnWhenItIsBack)
{
    EXPECT_TRUE(insert(hello, InsertionMethod::paste));
    const auto waiting = injector.clipboardReturned();
    queue.advance(500ms);
    EXPECT_TRUE(insert(hello, InsertionMethod::paste));
    queue.advance(999ms);
    EXPECT_FALSE(waiting.isReady());
    queue.advance(1ms);
    EXPECT_TRUE(waiting.isReady());
    EXPECT_TRUE(injector.clipboardReturned().isReady());
}

} // namespace
} // namespace corvandi::testing
