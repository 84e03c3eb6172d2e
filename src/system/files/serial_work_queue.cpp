#include "system/files/serial_work_queue.h"

#include <utility>

namespace corvandi {

SerialWorkQueue::SerialWorkQueue(const QString& label, SystemLog& log, std::shared_ptr<const void> uses,
                                 std::chrono::milliseconds patience)
    : log_(log)
    , uses_(std::move(uses))
    , worker_(label, Worker::AtEnd::finish, patience)
{
}

SerialWorkQueue::~SerialWorkQueue()
{
    if (!worker_.end())
        log_.write(QStringLiteral("the last changes take too long to write"));
}

void SerialWorkQueue::async(std::function<void()> work)
{
    worker_.post([uses = uses_, work = std::move(work)](const std::stop_token&) { work(); });
}

} // namespace corvandi
