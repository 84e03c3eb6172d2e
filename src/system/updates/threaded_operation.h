#pragma once

#include "base/main_queue.h"
#include "system/updates/update_thread.h"

#include <functional>
#include <memory>
#include <utility>

namespace corvandi {

/// The way of answers from an operation on the update thread to the main thread.
class AnswerPath {
public:
    explicit AnswerPath(MainQueue& queue)
        : queue_(queue)
    {
    }

    /// Runs `answer` on the main thread, unless nobody wants it any more by then. Thread: any.
    void send(std::function<void()> answer) const
    {
        queue_.async([isWanted = isWanted_, answer = std::move(answer)] {
            if (*isWanted)
                answer();
        });
    }
    /// Thread: main thread only.
    void close() const { *isWanted_ = false; }

private:
    MainQueue& queue_;
    /// Read and written on the main thread only.
    std::shared_ptr<bool> isWanted_ = std::make_shared<bool>(true);
};

/// An object that lives on the update thread while this one lives on the main thread.
template<class Operation>
class ThreadedOperation : public Registration {
public:
    using Make = std::function<std::unique_ptr<Operation>()>;

    /// `make` runs on the update thread; what it makes sends its answers over `path`.
    ThreadedOperation(UpdateThread& thread, AnswerPath path, Make make)
        : thread_(thread)
        , path_(std::move(path))
    {
        thread_.post([slot = slot_, make = std::move(make)] { *slot = make(); });
    }
    ~ThreadedOperation() override
    {
        path_.close();
        thread_.post([slot = slot_] { slot->reset(); });
    }
    ThreadedOperation(const ThreadedOperation&) = delete;
    ThreadedOperation& operator=(const ThreadedOperation&) = delete;

private:
    UpdateThread& thread_;
    AnswerPath path_;
    /// Its content is touched on the update thread only.
    std::shared_ptr<std::unique_ptr<Operation>> slot_ = std::make_shared<std::unique_ptr<Operation>>();
};

} // namespace corvandi
