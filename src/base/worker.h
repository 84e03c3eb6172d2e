#pragma once

#include "base/main_queue.h"

#include <QString>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <stop_token>
#include <utility>

namespace corvandi {

/// A member that tells callbacks whether the object that has it is still there. Thread: main thread only.
class Life {
public:
    Life() = default;
    Life(const Life&) = delete;
    Life& operator=(const Life&) = delete;

    /// `call`, which does nothing any more once the object has gone.
    template<class Call>
    [[nodiscard]] auto guard(Call call) const
    {
        return [life = watch(), call = std::move(call)](auto&&... arguments) mutable {
            if (!life.expired())
                call(std::forward<decltype(arguments)>(arguments)...);
        };
    }
    /// Expires with the object: for code that goes on after something that may have destroyed it.
    [[nodiscard]] std::weak_ptr<const void> watch() const { return token_; }

private:
    std::shared_ptr<const void> token_ = std::make_shared<char>();
};

/// The way from other threads to the object on the main thread that has this member. What arrives when the
/// mailbox has gone is dropped.
class Mailbox {
    struct State;

public:
    /// What other threads have of it: may be copied, and outlive the mailbox and the queue.
    class Address {
    public:
        /// Runs `work` on the main thread, later, in the order of posting. Thread: any. Work that comes too
        /// late may be destroyed here.
        void post(std::function<void()> work) const;

    private:
        friend class Mailbox;
        std::shared_ptr<State> state_;
    };

    /// `queue` outlives the mailbox. Thread: main thread only, as is the destructor's.
    explicit Mailbox(MainQueue& queue);
    ~Mailbox();
    Mailbox(const Mailbox&) = delete;
    Mailbox& operator=(const Mailbox&) = delete;

    [[nodiscard]] const Address& address() const { return address_; }

private:
    Address address_;
};

/// Does jobs away from the main thread, one at a time in the order of posting. Its thread comes with the
/// first job and goes when none is waiting, so there is nothing to wake in between. Jobs may run event loops.
///
/// A job can't be ended by force: one that does not end is waited for no longer than the worker's patience,
/// then its thread is left behind. So a job owns or shares all that it uses, and reports to the address of a
/// mailbox.
class Worker {
public:
    /// Must not throw. `stop` says that the worker ends without it: a long job looks at it, one that waits
    /// has a `std::stop_callback` that quits its event loop or closes what it reads.
    using Job = std::function<void(const std::stop_token& stop)>;
    enum class AtEnd {
        /// All jobs are done first.
        finish,
        /// Those that wait are dropped, the running one is told to stop.
        stop,
    };
    static constexpr std::chrono::milliseconds usualPatience = std::chrono::seconds(5);

    /// The last 15 bytes of `name` name the thread. Up to `threads` jobs run at the same time.
    Worker(const QString& name, AtEnd atEnd, std::chrono::milliseconds patience = usualPatience,
           size_t threads = 1);
    ~Worker() { end(); }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Never waits for a job; after the end it does nothing. What `job` holds is destroyed on its thread,
    /// before the next job. Thread: any.
    void post(Job job);
    /// What the destructor does, for those who log it: false when a thread was left behind, which goes on
    /// with what it was to finish. Thread: the owner's, so not inside a job.
    bool end();

private:
    struct State;

    std::shared_ptr<State> state_;
    AtEnd atEnd_;
    std::chrono::milliseconds patience_;
    size_t mostThreads_;
};

/// A job with a result for the main thread. Destroying the errand, which waits for nothing, drops the result;
/// the job is dropped, too, or told to stop when it has begun. Thread: main thread only, except `work`.
template<class Result>
class Errand : public Registration {
public:
    using Work = std::function<Result(const std::stop_token& stop)>;
    /// Runs once, later; never when the worker's end dropped or stopped the job. May destroy the errand.
    using Done = std::function<void(Result)>;

    /// `queue` outlives the errand.
    Errand(Worker& worker, MainQueue& queue, Work work, Done done)
        : mailbox_(queue)
        , done_(std::move(done))
    {
        worker.post([this, work = std::move(work), stop = stop_,
                     address = mailbox_.address()](const std::stop_token& end) mutable {
            const std::stop_callback passOn(end, [&stop] { stop.request_stop(); });
            if (stop.stop_requested())
                return;
            auto result = std::make_shared<Result>(work(stop.get_token()));
            if (!stop.stop_requested())
                address.post([this, result] { std::exchange(done_, nullptr)(std::move(*result)); });
        });
    }
    ~Errand() override { stop_.request_stop(); }
    Errand(const Errand&) = delete;
    Errand& operator=(const Errand&) = delete;

private:
    Mailbox mailbox_;
    Done done_;
    std::stop_source stop_;
};

} // namespace corvandi
