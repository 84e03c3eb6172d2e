#include "system/accessibility/at_spi_focus.h"

#include "system/accessibility/focus_worker.h"

#include <memory>

namespace corvandi {
namespace {

/// Somebody who waits for a refresh, for as long as this lives.
class Waiting : public Registration {
public:
    explicit Waiting(std::function<void()> done)
        : done_(std::make_shared<std::function<void()>>(std::move(done)))
    {
    }
    [[nodiscard]] std::weak_ptr<std::function<void()>> done() const { return done_; }

private:
    std::shared_ptr<std::function<void()>> done_;
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
    auto waiting = std::make_unique<Waiting>(std::move(done));
    // Both the worker and the queue only carry it: it is called, and looked whether it still lives, here.
    std::function<void()> tell = [weak = waiting->done()] {
        if (const auto call = weak.lock())
            (*call)();
    };
    if (const std::optional<pid_t> process = activeProcess_())
        worker_->refresh(*process, [this, tell = std::move(tell)] { queue_.async(tell); });
    else
        queue_.async(std::move(tell));
    return waiting;
}

} // namespace corvandi
