#include "platform/focus/focus_fixture.h"

#include "support/event_loop.h"

namespace corvandi::testing {

DesktopFocus::DesktopFocus(SystemLog& log)
    : activeProcess_(log)
    , focus_([this] { return activeProcess_(); }, log)
{
}

std::unique_ptr<TargetApplication> FocusTest::startQtFields(const QString& title)
{
    return shown(std::make_unique<TargetApplication>(QStringLiteral(QT_FIELDS), QStringList{title}));
}

std::unique_ptr<TargetApplication> FocusTest::startGtkFields(const QString& version, const QString& title)
{
    return shown(std::make_unique<TargetApplication>(
        QStringLiteral("/usr/bin/python3"), QStringList{QStringLiteral(GTK_FIELDS), version, title}));
}

std::unique_ptr<TargetApplication> FocusTest::shown(std::unique_ptr<TargetApplication> application)
{
    EXPECT_TRUE(application->hasFocusOn(QStringLiteral("line")));
    EXPECT_TRUE(isActive(*application));
    return application;
}

bool FocusTest::becomes(FocusTarget target)
{
    return waitUntil([&] { return inspector.currentTarget() == target; });
}

bool FocusTest::isActive(const TargetApplication& application)
{
    return waitUntil([&] { return desktop.activeProcess() == application.process(); });
}

} // namespace corvandi::testing
