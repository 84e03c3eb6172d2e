#include "platform/linux/log/qt_messages.h"

#include "support/recording_log.h"

#include <QDebug>

#include <gtest/gtest.h>

#include <thread>

namespace corvandi {
namespace {

using testing::RecordingLog;

TEST(QtMessages, AreWrittenToTheLog)
{
    RecordingLog log;
    const auto route = routeQtMessages(log);
    qWarning("could not do it");
    qCritical("worse");
    qInfo("by the way");
    EXPECT_EQ(log.lines(), (std::vector{QStringLiteral("Corvandi: Qt warning: could not do it"),
                                        QStringLiteral("Corvandi: Qt error: worse"),
                                        QStringLiteral("Corvandi: Qt information: by the way")}));
}

TEST(QtMessages, DebugOutputIsLeftOut)
{
    RecordingLog log;
    const auto route = routeQtMessages(log);
    qDebug("details");
    EXPECT_TRUE(log.lines().empty());
}

TEST(QtMessages, GoBackToTheFormerHandlerAfterwards)
{
    static int seenByFormer = 0;
    const auto original =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { ++seenByFormer; });
    RecordingLog log;
    {
        const auto route = routeQtMessages(log);
        qWarning("routed");
    }
    qWarning("not routed");
    EXPECT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(seenByFormer, 1);
    qInstallMessageHandler(original);
}

TEST(QtMessages, ALogThatUsesQtBadlyDoesNotCallItself)
{
    class Chatty : public RecordingLog {
        void writeLine(const QString& line) override
        {
            qWarning("while logging");
            RecordingLog::writeLine(line);
        }
    } log;
    const auto route = routeQtMessages(log);
    qWarning("first");
    qWarning("second");
    EXPECT_EQ(log.lines().size(), 2u);
    EXPECT_FALSE(log.contains(QStringLiteral("while logging")));
}

TEST(QtMessages, MayComeFromAnyThread)
{
    RecordingLog log;
    const auto route = routeQtMessages(log);
    std::jthread([] { qWarning("from elsewhere"); }).join();
    EXPECT_TRUE(log.contains(QStringLiteral("from elsewhere")));
}

} // namespace
} // namespace corvandi
