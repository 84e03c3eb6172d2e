#pragma once

#include "platform/audio_buffer.h"

#include <condition_variable>
#include <list>
#include <mutex>
#include <optional>

namespace corvandi {

/// A stream of sound from its writer (the capture side) to one reader (a speech engine's thread),
/// unbounded, so that writing never waits.
///
/// Thread: any for all operations.
class AudioStream {
public:
    /// A buffer in its list node: made by the writer, so that handing it over allocates nothing.
    using Node = std::list<AudioBuffer>;

    /// Appends what `node` holds. Ignored after `finish`.
    void yield(Node node)
    {
        const std::lock_guard guard(mutex_);
        if (finished_)
            return;
        buffers_.splice(buffers_.end(), node);
        available_.notify_one();
    }

    /// Says that nothing more will come. What is in the stream can still be read.
    void finish()
    {
        const std::lock_guard guard(mutex_);
        finished_ = true;
        available_.notify_all();
    }

    /// Waits for the next buffer; nothing when the stream has been finished and read to its end.
    [[nodiscard]] std::optional<AudioBuffer> next()
    {
        std::unique_lock guard(mutex_);
        available_.wait(guard, [this] { return finished_ || !buffers_.empty(); });
        if (buffers_.empty())
            return std::nullopt;
        Node first;
        first.splice(first.end(), buffers_, buffers_.begin());
        guard.unlock();
        return std::move(first.front());
    }

private:
    std::mutex mutex_;
    std::condition_variable available_;
    Node buffers_;
    bool finished_ = false;
};

} // namespace corvandi
