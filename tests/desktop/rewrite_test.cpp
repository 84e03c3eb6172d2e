// Dictations that a language model rewrites, behind a model server of the test's.

#include "data_folder.h"
#include "good_enough.h"
#include "model_server.h"
#include "session.h"

#include <gmock/gmock.h>

namespace corvandi::testing {
namespace {

using namespace harness;
using namespace std::chrono_literals;
using Kind = TargetApplication::Kind;

TEST(ARewrittenDictation, ShowsThatItIsPolishedAndArrives)
{
    ModelServer server;
    Session session;
    writePreferences({"cleanUpSentences=true", server.preference()});
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    EXPECT_EQ(session.dictate(recordings::goForward(), target), rewritten);

    session.program().waitForLine("Corvandi: Polishing");
    EXPECT_TRUE(data_folder::waitForHistory({rewritten}));
    EXPECT_EQ(server.questions(), 1U);
    EXPECT_FALSE(session.program().lineWith("rewrite failed"));
}

TEST(ADictationWithoutRewriting, AsksNobody)
{
    ModelServer server;
    Session session;
    writePreferences({server.preference()});
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    EXPECT_TRUE(
        saysWhatWasSaid(session.dictate(recordings::goForward(), target), recordings::goForward().reference));
    EXPECT_EQ(server.looks(), 0U);
}

TEST(AModelThatTakesTooLong, IsNotWaitedForAndTheLogSaysSo)
{
    ModelServer server(1min);
    Session session;
    writePreferences({"cleanUpSentences=true", server.preference()});
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    EXPECT_TRUE(
        saysWhatWasSaid(session.dictate(recordings::goForward(), target), recordings::goForward().reference));

    session.program().waitForLine("Corvandi: Polishing");
    session.program().waitForLine("Corvandi: rewrite failed: ");
    EXPECT_EQ(server.questions(), 1U);
    EXPECT_TRUE(server.waitUntilAlone()) << "the model must be told to stop";
}

TEST(AServerThatDoesNotRun, LeavesTheTextAsItIs)
{
    std::string preference;
    {
        const ModelServer gone;
        preference = gone.preference();
    }
    Session session;
    writePreferences({"cleanUpSentences=true", preference});
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    EXPECT_TRUE(
        saysWhatWasSaid(session.dictate(recordings::goForward(), target), recordings::goForward().reference));
    EXPECT_FALSE(session.program().lineWith("Corvandi: Polishing"));
    EXPECT_FALSE(session.program().lineWith("rewrite failed"));
}

} // namespace
} // namespace corvandi::testing
