#include "system/accessibility/at_spi_focus.h"

#include "base/worker.h"
#include "system/accessibility/focus_worker.h"

#include <memory>
#include <utility>

namespace corvandi {
namespace {

/// Somebody who waits for a refresh, for as long as this lives.
class Waiting : public Registration {
public:
    Waiting(MainQueue& queue, std::function<void()> done)
        : mailbox_(queue)
        , done_(std::move(done))
    {
    }
    /// Ends the waiting, later; to be called once. Thread: any.
    [[nodiscard]] std::function<void()> end()
    {
        return [this, address = mailbox_.address()] {
            // The one who waited may destroy this.
            address.post([this] { std::exchange(done_, nullptr)(); });
        };
    }

private:
    Mailbox mailbox_;
    std::function<void()> done_;
};

} // namespace

AtSpiFocus::AtSpiFocus(ActiveProcess activeProcess, MainQueue& queue, SystemLog& log)
    : activeProcess_(std::move(activeProcess))
    , queue_(queue)
    , worker_(std::make_unique<FocusWorker>(cache_, log).release())
{
    thread_.setObjectName(QStringLiteral("focus"));
    worker_->moveToThread(&thread_);
    QObject::connect(&thread_, &QThread::started, worker_, &FocusWorker::start);
    QObject::connect(&thread_, &QThread::finished, worker_, &QObject::deleteLater);
    thread_.start();
}

AtSpiFocus::~AtSpiFocus()
{
    thread_.requestInterruption();
    thread_.quit();
    thread_.wait();
}

std::optional<FocusedElement> AtSpiFocus::focusedElement()
{
    const std::optional<pid_t> process = activeProcess_();
    if (!process)
        return std::nullopt;
    worker_->request(*process);
    return cache_.elementOf(*process);
}

std::unique_ptr<Registration> AtSpiFocus::refresh(std::function<void()> done)
{
    auto waiting = std::make_unique<Waiting>(queue_, std::move(done));
    if (const std::optional<pid_t> process = activeProcess_())
        worker_->refresh(*process, waiting->end());
    else
        waiting->end()();
    return waiting;
}

} // namespace corvandi
