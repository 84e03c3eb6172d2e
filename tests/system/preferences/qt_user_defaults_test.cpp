#include "system/preferences/qt_user_defaults.h"

#include "support/recording_log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
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
    /// Waits for something that another thread does; false when it does not come within some seconds.
    template<class Condition>
    [[nodiscard]] static bool eventually(Condition condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + 5s;
        while (!condition()) {
            if (std::chrono::steady_clock::now() > deadline)
                return false;
            std::this_thread::sleep_for(1ms);
        }
        return true;
    }
    /// Whether the file comes to hold exactly these bytes.
    [[nodiscard]] bool becomes(const QByteArray& expected) const
    {
        return eventually([&] { return contents() == expected; });
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
    ASSERT_TRUE(eventually([&] { return log.contains(QStringLiteral("preferences not saved: ")); }));
    ASSERT_TRUE(QDir().rmdir(path));
    defaults.set(QStringLiteral("saveHistory"), false);
    EXPECT_TRUE(becomes("[General]\nhotkeyKeyCode=36\nsaveHistory=false\n"));
}

/// A log in which every line gets stuck until the log is opened.
class StuckLog : public RecordingLog {
public:
    void open()
    {
        {
            const std::lock_guard guard(mutex_);
            isOpen_ = true;
        }
        opened_.notify_all();
    }
    [[nodiscard]] bool isHoldingSomebody() const { return waiting_ > 0; }

protected:
    void writeLine(const QString& line) override
    {
        std::unique_lock lock(mutex_);
        ++waiting_;
        opened_.wait(lock, [this] { return isOpen_; });
        --waiting_;
        RecordingLog::writeLine(line);
    }

private:
    std::mutex mutex_;
    std::condition_variable opened_;
    std::atomic<int> waiting_ = 0;
    bool isOpen_ = false;
};

TEST_F(QtUserDefaultsTest, SettingGoesOnWhileAWriteIsStuck)
{
    StuckLog stuck;
    QtUserDefaults defaults(stuck, path);
    // The write fails, and its report gets stuck.
    ASSERT_TRUE(QDir().mkpath(path));
    defaults.set(key, int64_t{0});
    ASSERT_TRUE(eventually([&] { return stuck.isHoldingSomebody(); }));
    for (int i = 1; i <= 1000; ++i)
        defaults.set(key, int64_t{i});
    EXPECT_EQ(defaults.integer(key), 1000);
    EXPECT_TRUE(stuck.isHoldingSomebody());
    ASSERT_TRUE(QDir().rmdir(path));
    stuck.open();
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
