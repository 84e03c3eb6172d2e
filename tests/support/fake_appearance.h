#pragma once

#include "ports/appearance.h"

#include <list>

namespace corvandi::testing {

/// A desktop that wants what the test says.
class FakeAppearance : public Appearance {
public:
    [[nodiscard]] ColorScheme colorScheme() const override { return scheme_; }
    [[nodiscard]] std::unique_ptr<Registration> onChange(std::function<void()> callback) override
    {
        return std::make_unique<Entry>(callbacks_, std::move(callback));
    }
    void set(ColorScheme scheme)
    {
        scheme_ = scheme;
        for (const auto& callback : std::list(callbacks_))
            callback();
    }
    [[nodiscard]] size_t registrations() const { return callbacks_.size(); }

private:
    using Callbacks = std::list<std::function<void()>>;
    class Entry : public Registration {
    public:
        Entry(Callbacks& callbacks, std::function<void()> callback)
            : callbacks_(callbacks)
            , position_(callbacks.insert(callbacks.end(), std::move(callback)))
        {
        }
        ~Entry() override { callbacks_.erase(position_); }

    private:
        Callbacks& callbacks_;
        Callbacks::iterator position_;
    };

    ColorScheme scheme_ = ColorScheme::noPreference;
    Callbacks callbacks_;
};

} // namespace corvandi::testing
