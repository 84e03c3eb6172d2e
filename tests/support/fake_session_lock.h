#pragma once

#include "ports/session_lock.h"

#include <algorithm>
#include <list>
#include <utility>

namespace corvandi::testing {

/// A session that the test locks.
class FakeSessionLock : public SessionLock {
public:
    /// Runs whenever somebody asks.
    std::function<void()> onAsk;

    [[nodiscard]] bool isLocked() const override
    {
        if (onAsk)
            onAsk();
        return isLocked_;
    }
    [[nodiscard]] std::unique_ptr<Registration> onChange(std::function<void()> callback) override
    {
        return std::make_unique<Entry>(entries_, std::move(callback));
    }

    void set(bool isLocked)
    {
        if (isLocked == std::exchange(isLocked_, isLocked))
            return;
        // A callback may destroy any registration.
        const auto present = entries_;
        for (Entry* entry : present) {
            if (std::ranges::find(entries_, entry) != entries_.end())
                entry->call();
        }
    }
    [[nodiscard]] size_t registrations() const { return entries_.size(); }

private:
    class Entry : public Registration {
    public:
        Entry(std::list<Entry*>& entries, std::function<void()> callback)
            : entries_(entries)
            , callback_(std::move(callback))
        {
            entries_.push_back(this);
        }
        ~Entry() override { entries_.remove(this); }
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;

        void call()
        {
            const auto callback = callback_;
            callback();
        }

    private:
        std::list<Entry*>& entries_;
        std::function<void()> callback_;
    };

    bool isLocked_ = false;
    std::list<Entry*> entries_;
};

} // namespace corvandi::testing
