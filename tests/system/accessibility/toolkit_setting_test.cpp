#include "system/accessibility/at_spi_accessibility_client.h"

#include "support/event_loop.h"
#include "support/recording_log.h"

#include <gtest/gtest.h>

using namespace corvandi;
using namespace corvandi::testing;
using namespace std::chrono_literals;

namespace {

const QStringList key{QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("toolkit-accessibility")};

QString gsettings(const QStringList& arguments)
{
    QProcess process;
    process.start(QStringLiteral("gsettings"), arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

} // namespace

TEST(ToolkitSetting, TheDesktopsSettingIsTurnedOn)
{
    // A store that outlives its processes also where no settings daemon runs.
    qputenv("GSETTINGS_BACKEND", "keyfile");
    gsettings(QStringList(QStringLiteral("set")) + key + QStringList(QStringLiteral("false")));
    ASSERT_EQ(gsettings(QStringList(QStringLiteral("get")) + key), QStringLiteral("false"));
    RecordingLog log;
    ToolkitSetting setting(log);
    setting.turnOn();
    EXPECT_TRUE(waitUntil(
        [&] { return gsettings(QStringList(QStringLiteral("get")) + key) == QStringLiteral("true"); }));
    EXPECT_TRUE(log.lines().empty());
}

TEST(ToolkitSetting, AMissingToolIsLoggedAtMostOnce)
{
    RecordingLog log;
    ToolkitSetting setting(log, QStringLiteral("/nowhere/gsettings"));
    setting.turnOn();
    ASSERT_TRUE(waitUntil([&] { return !log.lines().empty(); }));
    setting.turnOn();
    runFor(50ms);
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST(ToolkitSetting, AToolThatFailsIsLogged)
{
    RecordingLog log;
    ToolkitSetting setting(log, QStringLiteral("false"));
    setting.turnOn();
    EXPECT_TRUE(waitUntil([&] { return log.contains(QStringLiteral("this session only")); }));
}

TEST(ToolkitSetting, AToolThatHangsIsLeftBehindAtTheEnd)
{
    RecordingLog log;
    {
        ToolkitSetting setting(log, QStringLiteral("yes"));
        setting.turnOn();
        runFor(50ms);
    }
    EXPECT_TRUE(log.lines().empty());
}
