#include "system/files/private_folder.h"

#include "real_folder.h"
#include "support/recording_log.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using ::testing::IsEmpty;
using testing::modeOf;
using testing::setMode;

class PrivateFolderTest : public ::testing::Test {
protected:
    testing::RealFolder folder;
    testing::RecordingLog log;
};

TEST_F(PrivateFolderTest, WhatOthersMayReadIsTheUsersAloneAgain)
{
    folder.put(folder.path("history.json"), "[]");
    folder.put(folder.path("history.json.corrupt"), "[");
    setMode(folder.path("history.json"), 0664);
    setMode(folder.path("history.json.corrupt"), 0444);
    setMode(folder.path(), 0755);
    makePrivate(folder.path(), log);
    EXPECT_EQ(modeOf(folder.path()), 0700U);
    EXPECT_EQ(modeOf(folder.path("history.json")), 0600U);
    EXPECT_EQ(modeOf(folder.path("history.json.corrupt")), 0400U);
    EXPECT_EQ(testing::contentOf(folder.path("history.json")), "[]");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(PrivateFolderTest, TheFileBehindALinkIsTheUsersAloneToo)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("data")));
    folder.put(folder.path("real.json"), "[]");
    setMode(folder.path("real.json"), 0644);
    folder.link(folder.path("data/history.json"), "../real.json");
    folder.link(folder.path("data/vocab.json"), "nowhere");
    makePrivate(folder.path("data"), log);
    EXPECT_EQ(modeOf(folder.path("real.json")), 0600U);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(PrivateFolderTest, WhatIsDeeperIsLeftAsItIs)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("inside")));
    setMode(folder.path("inside"), 0755);
    makePrivate(folder.path(), log);
    EXPECT_EQ(modeOf(folder.path("inside")), 0755U);
}

TEST_F(PrivateFolderTest, AFolderThatIsNotThereIsNotMissed)
{
    makePrivate(folder.path("absent"), log);
    EXPECT_FALSE(QDir(folder.path("absent")).exists());
    EXPECT_THAT(log.lines(), IsEmpty());
}

} // namespace
} // namespace corvandi
