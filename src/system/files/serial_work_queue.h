#pragma once

#include "base/worker.h"
#include "ports/system_log.h"
#include "ports/work_queue.h"

namespace corvandi {

/// A work queue with a thread of its own while there is work.
///
/// Handing over never waits for work. Work that hangs, on a disk for instance, keeps all that follows
/// waiting in memory. The destructor waits for it no longer than the queue's patience, and logs when that was
/// too short: then the work goes on until the process ends. A process that is killed meanwhile loses the
/// work that waits.
class SerialWorkQueue : public WorkQueue {
public:
    static constexpr std::chrono::milliseconds usualPatience = std::chrono::seconds(30);

    /// The end of `label` names the thread, as far as the system's 15 characters go. The work shares `uses`,
    /// what it refers to; `log` outlives the work.
    SerialWorkQueue(const QString& label, SystemLog& log, std::shared_ptr<const void> uses = nullptr,
                    std::chrono::milliseconds patience = usualPatience);
    ~SerialWorkQueue() override;
    SerialWorkQueue(const SerialWorkQueue&) = delete;
    SerialWorkQueue& operator=(const SerialWorkQueue&) = delete;

    void async(std::function<void()> work) override;

private:
    SystemLog& log_;
    std::shared_ptr<const void> uses_;
    Worker worker_;
};

} // namespace corvandi
