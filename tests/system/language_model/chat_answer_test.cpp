#include "system/language_model/chat_answer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

QString rest(const char* answer)
{
    return withoutReasoning(QString::fromUtf8(answer));
}

TEST(ReasoningTest, AnAnswerWithoutAnyIsLeftAsItIs)
{
    EXPECT_EQ(rest(" Hello.\n"), QStringLiteral(" Hello.\n"));
    EXPECT_EQ(rest(""), QString());
}

TEST(ReasoningTest, WhatStandsBeforeTheTextGoes)
{
    EXPECT_EQ(rest("<think>\nHm.\n</think>\n\nHello."), QStringLiteral("\n\nHello."));
    EXPECT_EQ(rest(" \n<think></think>Hello."), QStringLiteral("Hello."));
}

TEST(ReasoningTest, SeveralPiecesGo)
{
    EXPECT_EQ(rest("<think>a</think> <think>b</think>Hello."), QStringLiteral("Hello."));
}

TEST(ReasoningTest, AnOpeningTagThatIsMissingIsMadeUpFor)
{
    EXPECT_EQ(rest("Hm.</think>Hello."), QStringLiteral("Hello."));
}

TEST(ReasoningTest, ReasoningWithoutAnEndLeavesNothing)
{
    EXPECT_EQ(rest("<think>Hm, so Hello."), QString());
}

TEST(ReasoningTest, TagsWithinTheTextBelongToIt)
{
    EXPECT_EQ(rest("The tags <think> and </think>."), QStringLiteral("The tags <think> and </think>."));
    EXPECT_EQ(rest("<think>a</think>The tag </think>."), QStringLiteral("The tag </think>."));
}

QByteArray piece(const QByteArray& text)
{
    return "data: {\"choices\":[{\"delta\":{\"content\":\"" + text + "\"},\"finish_reason\":null}]}\n\n";
}

QByteArray ending(const QByteArray& reason = "stop")
{
    return "data: {\"choices\":[{\"delta\":{},\"finish_reason\":\"" + reason + "\"}]}\n\n";
}

QByteArray document(const QByteArray& content)
{
    return R"({"choices":[{"message":{"role":"assistant","content":)" + content +
           R"(},"finish_reason":"stop"}]})";
}

/// What the reader makes of an answer that comes in one piece.
LanguageModelAnswer read(const QByteArray& bytes)
{
    ChatAnswer answer;
    (void)answer.feed(bytes);
    return answer.finish();
}

QString textOf(const QByteArray& bytes)
{
    const LanguageModelAnswer answer = read(bytes);
    const auto* text = std::get_if<QString>(&answer);
    return text ? *text : QStringLiteral("no text: ") + std::get<LanguageModelFailure>(answer).description;
}

QString failureOf(const QByteArray& bytes)
{
    const LanguageModelAnswer answer = read(bytes);
    const auto* failure = std::get_if<LanguageModelFailure>(&answer);
    return failure ? failure->description : QStringLiteral("no failure");
}

const QString notUnderstood = QStringLiteral("the server's answer is not understood");

TEST(ChatAnswerTest, PiecesOfAStreamMakeTheText)
{
    EXPECT_EQ(textOf(piece("So, ") + piece("we went ") + piece("home.") + ending() + "data: [DONE]\n\n"),
              QStringLiteral("So, we went home."));
}

TEST(ChatAnswerTest, AStreamMayBeCutAnywhere)
{
    const QByteArray stream =
        ": hello\r\n\r\n" + piece("Gr\xC3\xBC\xC3\x9F Gott, ") + piece("\\u00fc") + ending();
    for (qsizetype cut = 0; cut <= stream.size(); ++cut) {
        ChatAnswer answer;
        if (answer.feed(stream.first(cut)))
            (void)answer.feed(stream.sliced(cut));
        const LanguageModelAnswer outcome = answer.finish();
        ASSERT_TRUE(std::holds_alternative<QString>(outcome)) << "cut at " << cut;
        EXPECT_EQ(std::get<QString>(outcome), QString::fromUtf8("Grüß Gott, ü"));
    }
}

TEST(ChatAnswerTest, NothingMoreIsReadBehindTheEnd)
{
    ChatAnswer answer;
    EXPECT_TRUE(answer.feed(piece("Hello.")));
    EXPECT_FALSE(answer.feed(ending() + piece("And more.")));
    EXPECT_EQ(std::get<QString>(answer.finish()), QStringLiteral("Hello."));
}

TEST(ChatAnswerTest, TheMarkForTheEndIsEnough)
{
    EXPECT_EQ(textOf(piece("Hello.") + "data: [DONE]\n\n"), QStringLiteral("Hello."));
}

TEST(ChatAnswerTest, EventsThatOnlyCountAreIgnored)
{
    EXPECT_EQ(textOf(R"(data: {"choices":[{"delta":{"role":"assistant","content":null}}]})"
                     "\n\n" +
                     piece("Hello.") + "data: {\"choices\":[],\"usage\":{\"total_tokens\":9}}\n\n" +
                     ending()),
              QStringLiteral("Hello."));
}

TEST(ChatAnswerTest, OnePlainDocumentIsAnAnswer)
{
    EXPECT_EQ(textOf(document("\"Hello.\"")), QStringLiteral("Hello."));
    EXPECT_EQ(textOf(" \r\n" + document("\"Hello.\"") + "\n"), QStringLiteral("Hello."));
}

TEST(ChatAnswerTest, APlainDocumentNeedNotSayWhyItEnds)
{
    EXPECT_EQ(textOf(R"({"choices":[{"message":{"content":"Hello."}}]})"), QStringLiteral("Hello."));
}

TEST(ChatAnswerTest, ReasoningInAFieldOfItsOwnIsLeftOut)
{
    EXPECT_EQ(textOf(R"(data: {"choices":[{"delta":{"reasoning_content":"Hm."}}]})"
                     "\n\n" +
                     piece("Hello.") + ending()),
              QStringLiteral("Hello."));
    EXPECT_EQ(textOf(R"({"choices":[{"message":{"reasoning":"Hm.","content":"Hello."}}]})"),
              QStringLiteral("Hello."));
}

TEST(ChatAnswerTest, ReasoningBeforeTheTextIsLeftOut)
{
    EXPECT_EQ(textOf(piece("<thi") + piece("nk>Hm.</think>") + piece("Hello.") + ending()),
              QStringLiteral("Hello."));
}

TEST(ChatAnswerTest, ReasoningAloneIsAFailure)
{
    const QString alone = QStringLiteral("the model's answer is reasoning alone");
    EXPECT_EQ(failureOf(piece("<think>Hm.</think>\\n") + ending()), alone);
    EXPECT_EQ(failureOf(piece("<think>Hm, it goes on") + ending()), alone);
    EXPECT_EQ(failureOf(R"({"choices":[{"message":{"reasoning_content":"Hm.","content":""}}]})"), alone);
}

TEST(ChatAnswerTest, AnEmptyAnswerIsAFailure)
{
    EXPECT_EQ(failureOf(""), QStringLiteral("the server's answer is empty"));
    EXPECT_EQ(failureOf("\n\n"), QStringLiteral("the server's answer is empty"));
    EXPECT_EQ(failureOf(ending()), QStringLiteral("the model's answer is empty"));
    EXPECT_EQ(failureOf(document("\"\"")), QStringLiteral("the model's answer is empty"));
    EXPECT_EQ(failureOf(document("null")), QStringLiteral("the model's answer is empty"));
    EXPECT_EQ(failureOf(R"({"choices":[]})"), QStringLiteral("the model's answer is empty"));
}

TEST(ChatAnswerTest, AStreamThatEndsTooEarlyIsAFailure)
{
    EXPECT_EQ(failureOf(piece("Hello, ")), QStringLiteral("the answer broke off"));
}

TEST(ChatAnswerTest, ATextThatTheServerHasCutIsAFailure)
{
    EXPECT_EQ(failureOf(piece("Hello, ") + ending("length")),
              QStringLiteral("the server cut the answer short"));
}

TEST(ChatAnswerTest, ARefusalIsAFailure)
{
    EXPECT_EQ(failureOf(piece("I") + ending("content_filter")), QStringLiteral("the model refused"));
}

TEST(ChatAnswerTest, AnErrorIsAFailureThatDoesNotQuoteIt)
{
    const QString error = QStringLiteral("the server reports an error");
    EXPECT_EQ(failureOf(R"({"error":{"message":"can't process: my secret words"}})"), error);
    EXPECT_EQ(failureOf(piece("Hel") + "data: {\"error\":\"my secret words\"}\n\n"), error);
    EXPECT_EQ(textOf(R"({"error":null,"choices":[{"message":{"content":"Hello."}}]})"),
              QStringLiteral("Hello."));
}

TEST(ChatAnswerTest, WhatIsNoAnswerIsNotUnderstood)
{
    for (const char* bytes :
         {"<html>Hello.</html>", "Hello.", "{", "{}", "[]", R"({"choices":1})", R"({"choices":{}})",
          "data: {\n\n", "data: Hello.\n\n", R"({"choices":[{"message":{"content":1}}]})",
          R"({"choices":[{"message":1}]} trailing)",
          R"(data: {"choices":[{"delta":{"content":["a"]}}]})"
          "\n\n"})
        EXPECT_EQ(failureOf(bytes), notUnderstood) << bytes;
}

TEST(ChatAnswerTest, WhatIsNoUnicodeIsNotUnderstood)
{
    EXPECT_EQ(failureOf(piece("Hello \xFF") + ending()), notUnderstood);
    EXPECT_EQ(failureOf(piece("Gr\xC3") + ending()), notUnderstood);
    EXPECT_EQ(failureOf(document("\"\\ud83d\"")), notUnderstood);
    EXPECT_EQ(failureOf(QByteArray("\xFF\xFE\x00", 3)), notUnderstood);
}

TEST(ChatAnswerTest, TheFirstFailureIsTold)
{
    EXPECT_EQ(failureOf("data: {\n\n" + piece("Hello.") + ending("length")), notUnderstood);
}

TEST(ChatAnswerTest, AnEndlessAnswerIsGivenUp)
{
    ChatAnswer answer;
    const QByteArray more = piece(QByteArray(1000, 'a'));
    qsizetype read = 0;
    while (answer.feed(more)) {
        read += more.size();
        ASSERT_LE(read, ChatAnswer::longestStream);
    }
    EXPECT_GT(read, ChatAnswer::longestStream - 2 * more.size());
    EXPECT_EQ(std::get<LanguageModelFailure>(answer.finish()).description,
              QStringLiteral("the answer is too long"));
}

TEST(ChatAnswerTest, AnEventOrDocumentThatNeverEndsIsGivenUp)
{
    for (const QByteArray& start : {QByteArray("data: {"), QByteArray("{"), QByteArray()}) {
        ChatAnswer answer;
        bool wantsMore = start.isEmpty() || answer.feed(start);
        const QByteArray more(1000, ' ');
        for (qsizetype read = 0; wantsMore; read += more.size()) {
            ASSERT_LE(read, ChatAnswer::longestDocument);
            wantsMore = answer.feed(more);
        }
        EXPECT_TRUE(std::holds_alternative<LanguageModelFailure>(answer.finish()));
    }
}

} // namespace
} // namespace corvandi
