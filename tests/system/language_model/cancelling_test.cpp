#include "chat_server_fixture.h"

#include <QDir>

namespace corvandi {
namespace {

using namespace testing;

qsizetype entriesOf(const char* folder)
{
    return QDir(QLatin1String(folder))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

/// What this process holds, as the kernel counts it.
struct Holdings {
    qsizetype files = entriesOf("/proc/self/fd");
    qsizetype threads = entriesOf("/proc/self/task");
    [[nodiscard]] bool isWithin(const Holdings& other) const
    {
        return files <= other.files && threads <= other.threads;
    }
};

class CancellingTest : public ChatServerTest {
protected:
    CancellingTest()
    {
        listModels(server);
        server.answer(chatPath, [](QTcpSocket&) {});
        look();
        (void)waitUntil([&] { return server.connectionCount() == 0; });
    }
    [[nodiscard]] std::unique_ptr<LanguageModelSession> question()
    {
        auto session = model().makeSession(QString());
        session->respond(QStringLiteral("hello"), [](const LanguageModelAnswer&) { ADD_FAILURE(); });
        return session;
    }
    /// Waits until the process holds no more than it held before it first looked for a model.
    [[nodiscard]] bool isAtRest() const
    {
        return waitUntil([this] { return Holdings().isWithin(before); });
    }

    const Holdings before;
};

TEST_F(CancellingTest, ALookLeavesNoThreadAndNoConnection)
{
    EXPECT_EQ(lookLater(), LanguageModelAvailability::available);
    EXPECT_TRUE(isAtRest());
}

TEST_F(CancellingTest, AnAbandonedQuestionClosesItsConnection)
{
    auto session = question();
    ASSERT_TRUE(waitUntil([&] { return server.bodies().size() == 2; }));
    EXPECT_EQ(server.connectionCount(), 1);
    session.reset();
    EXPECT_TRUE(waitUntil([&] { return server.connectionCount() == 0; }, 1s));
    EXPECT_TRUE(isAtRest());
}

TEST_F(CancellingTest, AQuestionThatIsAbandonedInTheMiddleOfItsAnswerIsNotAnswered)
{
    server.answer(chatPath, [](QTcpSocket& socket) {
        socket.write(head("200 OK") + "data: {\"choices\":[{\"delta\":{\"content\":\"Hel\"}}]}\n\n");
    });
    auto session = question();
    ASSERT_TRUE(waitUntil([&] { return server.bodies().size() == 2; }));
    runFor(20ms);
    session.reset();
    EXPECT_TRUE(waitUntil([&] { return server.connectionCount() == 0; }, 1s));
}

TEST_F(CancellingTest, AQuestionThatIsAbandonedAtOnceIsNeverSent)
{
    (void)question();
    runFor(50ms);
    EXPECT_EQ(server.bodies().size(), 1U) << "the list of models alone was asked for";
}

TEST_F(CancellingTest, ALookThatDoesNotGetItsTurnFindsAModelThatIsNotReady)
{
    std::vector<std::unique_ptr<LanguageModelSession>> open;
    while (open.size() < 8)
        open.push_back(question());
    ASSERT_TRUE(waitUntil([&] { return server.connectionCount() == 8; }));
    EXPECT_EQ(lookLater(), LanguageModelAvailability::modelNotReady);
    open.clear();
    EXPECT_EQ(lookLater(), LanguageModelAvailability::available);
}

TEST_F(CancellingTest, AThousandAbandonedQuestionsLeaveNothing)
{
    for (int i = 0; i < 1000; ++i) {
        auto session = question();
        // Some are abandoned before they are sent, some while they are, some while they wait.
        if (i % 3 == 1)
            QCoreApplication::processEvents();
        if (i % 3 == 2)
            (void)waitUntil([&] { return server.connectionCount() > 0; }, 100ms);
    }
    EXPECT_TRUE(isAtRest()) << Holdings().files << " files and " << Holdings().threads << " threads, not "
                            << before.files << " and " << before.threads;
    EXPECT_EQ(server.connectionCount(), 0);
}

} // namespace
} // namespace corvandi
