#include "engines/shared/adaptation_file.h"

#include "support/fake_files.h"
#include "support/recording_log.h"

#include <gtest/gtest.h>

namespace corvandi::testing {
namespace {

class AdaptationFileTest : public ::testing::Test {
protected:
    const QString path = QStringLiteral("/cache/Corvandi/speech-adaptation.json");
    const Adaptation learned{QStringLiteral("50.3,-2.4"), -31.25};

    std::shared_ptr<FakeFileSystem> files = std::make_shared<FakeFileSystem>();
    RecordingLog log;
    AdaptationFile file{files, log, QStringLiteral("/cache/Corvandi")};
};

TEST_F(AdaptationFileTest, WhatIsWrittenIsReadBack)
{
    file.write(learned);
    EXPECT_TRUE(files->folders.contains(QStringLiteral("/cache/Corvandi")));
    EXPECT_EQ(AdaptationFile(files, log, QStringLiteral("/cache/Corvandi")).read(), learned);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(AdaptationFileTest, WithoutAFileNothingWasLearned)
{
    EXPECT_EQ(file.read(), Adaptation{});
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(AdaptationFileTest, ABrokenFileIsIgnoredWithOneLine)
{
    for (const char* content : {"", "{", "[]", R"({"engine":3,"speechLevel":-30})", R"({"engine":"1,2"})"}) {
        files->files.insert_or_assign(path, content);
        const size_t before = log.lines().size();
        EXPECT_EQ(file.read(), Adaptation{}) << content;
        EXPECT_EQ(log.lines().size(), before + 1) << content;
    }
}

TEST_F(AdaptationFileTest, AFileThatCantBeReadIsIgnoredWithOneLine)
{
    file.write(learned);
    files->fail(FileOperation::read, QStringLiteral("Input/output error"));
    EXPECT_EQ(file.read(), Adaptation{});
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(AdaptationFileTest, AFullDiskIsLoggedOnceUntilThereIsRoomAgain)
{
    files->fail(FileOperation::write, QStringLiteral("No space left on device"));
    file.write(learned);
    file.write(learned);
    EXPECT_EQ(log.lines().size(), 1U);
    files->recover(FileOperation::write);
    file.write(learned);
    EXPECT_EQ(file.read(), learned);
    files->fail(FileOperation::write, QStringLiteral("No space left on device"));
    file.write(learned);
    EXPECT_EQ(log.lines().size(), 2U);
}

} // namespace
} // namespace corvandi::testing
