#pragma once

#include "ports/update_source.h"

#include <utility>

namespace corvandi::testing {

/// A place of updates that answers when the test says so.
class FakeUpdateSource : public UpdateSource {
public:
    bool configured = true;
    int requests = 0;

    [[nodiscard]] bool isConfigured() const override { return configured; }
    [[nodiscard]] std::unique_ptr<Registration> fetch(Handler handler) override
    {
        ++requests;
        handler_ = std::move(handler);
        return std::make_unique<Pending>(handler_);
    }

    /// Whether something is waited for: neither answered nor cancelled.
    [[nodiscard]] bool isFetching() const { return bool(handler_); }
    void answer(const UpdateResult<QByteArray>& result) { std::exchange(handler_, {})(result); }

private:
    class Pending : public Registration {
    public:
        explicit Pending(Handler& slot)
            : slot_(slot)
        {
        }
        ~Pending() override { slot_ = {}; }

    private:
        Handler& slot_;
    };

    Handler handler_;
};

} // namespace corvandi::testing
