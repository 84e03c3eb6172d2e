#pragma once

#include "harness/waiting.h"

#include <sys/types.h>

#include <string>

namespace corvandi::harness {

/// One thread of a child process that is kept from running, as if it hung; the others go on. Goes on when
/// this is destroyed, by the same thread.
class StoppedThread {
public:
    /// `name` is the thread's own. Throws HarnessError when there is none or it can't be stopped.
    StoppedThread(pid_t process, const std::string& name);
    StoppedThread(const StoppedThread&) = delete;
    StoppedThread& operator=(const StoppedThread&) = delete;
    ~StoppedThread();

private:
    pid_t thread_;
};

} // namespace corvandi::harness
