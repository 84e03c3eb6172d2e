#include "system/updates/update_thread.h"

namespace corvandi {

UpdateThread::UpdateThread()
{
    thread_.setObjectName(QStringLiteral("updates"));
    context_->moveToThread(&thread_);
}

UpdateThread::~UpdateThread()
{
    if (!thread_.isRunning())
        return;
    thread_.requestInterruption();
    // Posted like all work, so that what waits before it is still done.
    post([this] { thread_.quit(); });
    thread_.wait();
}

void UpdateThread::post(std::function<void()> work)
{
    if (!thread_.isRunning())
        thread_.start();
    QMetaObject::invokeMethod(context_.get(), std::move(work), Qt::QueuedConnection);
}

} // namespace corvandi
