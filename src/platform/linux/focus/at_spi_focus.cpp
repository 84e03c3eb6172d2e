#include "platform/linux/focus/at_spi_focus.h"

#include "platform/linux/focus/focus_worker.h"

#include <memory>

namespace corvandi {

AtSpiFocus::AtSpiFocus(ActiveProcess activeProcess, SystemLog& log)
    : activeProcess_(std::move(activeProcess))
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

} // namespace corvandi
