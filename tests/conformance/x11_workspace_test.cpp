#include "conformance/event_loop_time.h"
#include "conformance/workspace_suite.h"
#include "session/x11/windows/x11_workspace.h"
#include "system/process/qt_main_queue.h"

#include <QProcess>
#include <QWidget>

#include <stdexcept>
#include <vector>

namespace corvandi::testing {
namespace {

/// Another program with one window.
class Program {
public:
    explicit Program(const QString& identifier)
    {
        process_.start(QStringLiteral(WINDOW_PEER), {QStringLiteral("--gtk-id"), identifier});
        if (!waitUntil([this] { return isShown(); }, std::chrono::seconds(10)))
            throw std::runtime_error("the other program does not become the active one");
    }
    ~Program()
    {
        process_.kill();
        process_.waitForFinished();
    }

    [[nodiscard]] pid_t id() const { return static_cast<pid_t>(process_.processId()); }

private:
    [[nodiscard]] bool isShown()
    {
        output_ += process_.readAllStandardOutput();
        return output_.contains("shown");
    }

    QProcess process_;
    QByteArray output_;
};

class X11WorkspaceDriver : public OnEventLoop<WorkspaceDriver> {
public:
    [[nodiscard]] Workspace& workspace() override { return workspace_; }
    [[nodiscard]] Application startApplication() override
    {
        const QString identifier = QStringLiteral("org.example.Number%1").arg(programs_.size() + 1);
        programs_.push_back(std::make_unique<Program>(identifier));
        return {identifier, programs_.back()->id()};
    }
    void endLatestApplication() override { programs_.pop_back(); }
    void showOwnWindow() override
    {
        own_ = std::make_unique<QWidget>();
        own_->show();
    }

private:
    QtMainQueue queue_;
    X11Workspace workspace_{queue_};
    std::vector<std::unique_ptr<Program>> programs_;
    std::unique_ptr<QWidget> own_;
};

INSTANTIATE_TEST_SUITE_P(Adapters, WorkspaceSuite, over<X11WorkspaceDriver>("X11"));

} // namespace
} // namespace corvandi::testing
