#include "conformance/virtual_time.h"
#include "conformance/workspace_suite.h"
#include "support/fake_session.h"

#include <vector>

namespace corvandi::testing {
namespace {

class FakeWorkspaceDriver : public OnVirtualTime<WorkspaceDriver> {
public:
    FakeWorkspaceDriver() { showLatest(); }

    [[nodiscard]] Workspace& workspace() override { return workspace_; }
    [[nodiscard]] Application startApplication() override
    {
        const auto number = static_cast<int>(applications_.size()) + 1;
        applications_.push_back({QStringLiteral("org.example.Number%1").arg(number), 1000 + number});
        showLatest();
        return applications_.back();
    }
    void endLatestApplication() override
    {
        applications_.pop_back();
        showLatest();
    }
    void showOwnWindow() override
    {
        workspace_.frontmost = workspace_.own;
        workspace_.process = getpid();
    }

private:
    void showLatest()
    {
        workspace_.frontmost.reset();
        workspace_.process.reset();
        if (applications_.empty())
            return;
        workspace_.frontmost = applications_.back().identifier;
        workspace_.process = applications_.back().process;
    }

    FakeWorkspace workspace_;
    std::vector<Application> applications_;
};

INSTANTIATE_TEST_SUITE_P(Fake, WorkspaceSuite, over<FakeWorkspaceDriver>("Fake"));

} // namespace
} // namespace corvandi::testing
