#pragma once

#include <functional>

namespace corvandi {

/// A queue that does its work away from the main thread: one piece at a time, in the order in which it
/// was handed over.
///
/// Thread: main thread only. Destroying the queue waits until all work is done, unless that takes too long.
class WorkQueue {
public:
    virtual ~WorkQueue() = default;

    /// `work` must not throw.
    virtual void async(std::function<void()> work) = 0;
};

} // namespace corvandi
