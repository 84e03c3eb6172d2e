#pragma once

#include "conformance/conformance.h"
#include "ports/workspace.h"

#include <unistd.h>

namespace corvandi::testing {

/// A desktop without any window, on which applications come and go.
class WorkspaceDriver : public PassingTime {
public:
    struct Application {
        QString identifier;
        pid_t process;
    };

    [[nodiscard]] virtual Workspace& workspace() = 0;
    /// Starts another application, whose window becomes the active one. Every call starts a new one.
    [[nodiscard]] virtual Application startApplication() = 0;
    /// Ends the application that was started last; the one before, if there is one, becomes the active one.
    virtual void endLatestApplication() = 0;
    /// Shows a window of this program, which becomes the active one, and stays until the test is over.
    virtual void showOwnWindow() = 0;
};

class WorkspaceSuite : public ConformanceTest<WorkspaceDriver> {
protected:
    void expectFrontmost(const std::optional<QString>& identifier, const std::optional<pid_t>& process)
    {
        Workspace& workspace = driver.workspace();
        EXPECT_TRUE(driver.until([&] { return workspace.frontmostApplication() == identifier; }))
            << workspace.frontmostApplication().value_or(QStringLiteral("none")).toStdString();
        EXPECT_TRUE(driver.until([&] { return workspace.frontmostProcess() == process; }));
    }
};

TEST_P(WorkspaceSuite, WithoutAWindowThereIsNoApplicationAndNoProcess)
{
    expectFrontmost(std::nullopt, std::nullopt);
}

TEST_P(WorkspaceSuite, TheApplicationOfTheActiveWindowIsFrontmost)
{
    const auto application = driver.startApplication();
    expectFrontmost(application.identifier, application.process);
}

TEST_P(WorkspaceSuite, AnApplicationThatComesToTheFrontTakesThePlaceOfTheFormer)
{
    const auto first = driver.startApplication();
    expectFrontmost(first.identifier, first.process);
    const auto second = driver.startApplication();
    ASSERT_NE(first.identifier, second.identifier);
    expectFrontmost(second.identifier, second.process);
    driver.endLatestApplication();
    expectFrontmost(first.identifier, first.process);
}

TEST_P(WorkspaceSuite, AfterTheLastApplicationHasGoneThereIsNone)
{
    const auto application = driver.startApplication();
    expectFrontmost(application.identifier, application.process);
    driver.endLatestApplication();
    expectFrontmost(std::nullopt, std::nullopt);
}

TEST_P(WorkspaceSuite, AWindowOfThisProgramBearsItsOwnIdentifier)
{
    ASSERT_TRUE(driver.workspace().ownIdentifier());
    driver.showOwnWindow();
    expectFrontmost(driver.workspace().ownIdentifier(), getpid());
}

TEST_P(WorkspaceSuite, AnotherApplicationDoesNotBearThisProgramsIdentifier)
{
    const auto application = driver.startApplication();
    expectFrontmost(application.identifier, application.process);
    EXPECT_NE(driver.workspace().frontmostApplication(), driver.workspace().ownIdentifier());
}

} // namespace corvandi::testing
