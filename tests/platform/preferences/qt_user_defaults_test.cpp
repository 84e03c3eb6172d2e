#include "platform/linux/preferences/qt_user_defaults.h"

#include "support/recording_log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using testing::RecordingLog;

class QtUserDefaultsTest : public ::testing::Test {
protected:
    [[nodiscard]] QByteArray contents() const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Waits until the file holds exactly these bytes; false when it does not within some seconds.
    [[nodiscard]] bool becomes(const QByteArray& expected) const
    {
        const auto deadline = std::chrono::steady_clock::now() + 5s;
        while (contents() != expected) {
            if (std::chrono::steady_clock::now() > deadline)
                return false;
            std::this_thread::yield();
        }
        return true;
    }

    RecordingLog log;
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("Corvandi.conf"));
    const QString key = QStringLiteral("hotkeyKeyCode");
};

TEST_F(QtUserDefaultsTest, AnsweringAndRegisteringWriteNothing)
{
    {
        QtUserDefaults defaults(log, path);
        defaults.registerDefaults({{key, int64_t{49}}});
        EXPECT_EQ(defaults.integer(key), 49);
    }
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

TEST_F(QtUserDefaultsTest, AChangeReachesTheDiskByItself)
{
    QtUserDefaults defaults(log, path);
    defaults.registerDefaults({{QStringLiteral("saveHistory"), true}});
    defaults.set(key, int64_t{36});
    EXPECT_TRUE(becomes("[General]\nhotkeyKeyCode=36\n"));
    defaults.set(key, int64_t{37});
    EXPECT_TRUE(becomes("[General]\nhotkeyKeyCode=37\n"));
}

TEST_F(QtUserDefaultsTest, ThePresentValueOfARegisteredDefaultIsWrittenToo)
{
    QtUserDefaults defaults(log, path);
    defaults.registerDefaults({{key, int64_t{49}}});
    defaults.set(key, int64_t{49});
    EXPECT_TRUE(becomes("[General]\nhotkeyKeyCode=49\n"));
}

TEST_F(QtUserDefaultsTest, EverythingThatWasSetIsOnTheDiskAfterTheEnd)
{
    for (int round = 0; round < 50; ++round) {
        {
            QtUserDefaults defaults(log, path);
            defaults.set(QStringLiteral("insertion"), QStringLiteral("paste"));
            defaults.set(key, int64_t{round});
        }
        ASSERT_EQ(contents(),
                  "[General]\nhotkeyKeyCode=" + QByteArray::number(round) + "\ninsertion=paste\n");
    }
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(QtUserDefaultsTest, ValuesAreReadFromAFileWrittenByHand)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(
        "; mine\n[General]\nhotkeyKeyCode = 12\nsaveHistory=Yes\nautoPunctuation=perhaps\ninsertion=\n");
    file.close();
    const QtUserDefaults defaults(log, path);
    EXPECT_EQ(defaults.integer(key), 12);
    EXPECT_TRUE(defaults.boolean(QStringLiteral("saveHistory")));
    EXPECT_FALSE(defaults.boolean(QStringLiteral("autoPunctuation")));
    EXPECT_EQ(defaults.string(QStringLiteral("insertion")), QString());
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(QtUserDefaultsTest, AStoreThatCannotBeWrittenKeepsValuesForTheLifeOfTheProgram)
{
    ASSERT_TRUE(QDir().mkpath(path));
    {
        QtUserDefaults defaults(log, path);
        defaults.set(key, int64_t{36});
        EXPECT_EQ(defaults.integer(key), 36);
    }
    EXPECT_TRUE(log.contains(QStringLiteral("preferences not saved: ")));
}

TEST_F(QtUserDefaultsTest, AFailedWriteIsMadeUpForByTheNextOne)
{
    ASSERT_TRUE(QDir().mkpath(path));
    QtUserDefaults defaults(log, path);
    defaults.set(key, int64_t{36});
    const auto deadline = std::chrono::steady_clock::now() + 5s;
    while (!log.contains(QStringLiteral("preferences not saved: ")) &&
           std::chrono::steady_clock::now() < deadline)
        std::this_thread::yield();
    ASSERT_TRUE(QDir().rmdir(path));
    defaults.set(QStringLiteral("saveHistory"), false);
    EXPECT_TRUE(becomes("[General]\nhotkeyKeyCode=36\nsaveHistory=false\n"));
}

TEST_F(QtUserDefaultsTest, SettingDoesNotWaitForTheDisk)
{
    QtUserDefaults defaults(log, path);
    defaults.set(key, int64_t{0});
    ASSERT_TRUE(becomes("[General]\nhotkeyKeyCode=0\n"));
    std::chrono::nanoseconds longest{};
    for (int i = 1; i <= 1000; ++i) {
        const auto start = std::chrono::steady_clock::now();
        defaults.set(key, int64_t{i});
        longest = std::max<std::chrono::nanoseconds>(longest, std::chrono::steady_clock::now() - start);
    }
    EXPECT_LT(longest, 10ms);
    EXPECT_TRUE(becomes("[General]\nhotkeyKeyCode=1000\n"));
}

TEST(QtUserDefaults, LiveInTheUsersConfigurationFolder)
{
    const QByteArray former = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", "/somewhere/config");
    EXPECT_EQ(QtUserDefaults::defaultPath(), QStringLiteral("/somewhere/config/Corvandi/Corvandi.conf"));
    if (former.isNull())
        qunsetenv("XDG_CONFIG_HOME");
    else
        qputenv("XDG_CONFIG_HOME", former);
}

} // namespace
} // namespace corvandi
