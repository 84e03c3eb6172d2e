#include "platform/focus/focus_fixture.h"

#include "support/event_loop.h"

namespace corvandi::testing {
namespace {

/// Passwords are the only secure fields, so that their subrole need not be listed.
std::optional<QString> expectedSubrole(const ExpectedField& field)
{
    if (field.target == FocusTarget::secure)
        return QStringLiteral("AXSecureTextField");
    return field.subrole ? std::optional(QString(QLatin1String(field.subrole))) : std::nullopt;
}

std::string description(const std::optional<FocusedElement>& element)
{
    if (!element)
        return "unknown";
    const QString none = QStringLiteral("none");
    return "role " + element->role.value_or(none).toStdString() + ", subrole " +
           element->subrole.value_or(none).toStdString();
}

} // namespace

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

void FocusTest::expectRecognised(const ExpectedField& field)
{
    EXPECT_TRUE(waitUntil([&] {
        const auto element = desktop.focusedElement();
        return element && element->role == QLatin1String(field.role) &&
               element->subrole == expectedSubrole(field) && inspector.currentTarget() == field.target;
    })) << description(desktop.focusedElement());
}

} // namespace corvandi::testing
