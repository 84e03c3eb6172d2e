#pragma once

#include "base/main_queue.h"

#include <functional>
#include <memory>

namespace corvandi {

/// Takes work from the sound thread to the object on the main thread that owns this mailbox. Work that
/// arrives after the mailbox has been destroyed is dropped.
///
/// Thread: `post` from any as long as the mailbox lives; the work runs on the main thread.
class MainThreadMailbox {
public:
    explicit MainThreadMailbox(MainQueue& queue)
        : queue_(queue)
    {
    }

    void post(std::function<void()> work) const
    {
        queue_.async([open = std::weak_ptr<const Token>(token_), work = std::move(work)] {
            if (!open.expired())
                work();
        });
    }

private:
    struct Token {};

    MainQueue& queue_;
    const std::shared_ptr<const Token> token_ = std::make_shared<Token>();
};

} // namespace corvandi
