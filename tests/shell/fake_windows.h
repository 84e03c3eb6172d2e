#pragma once

#include "ports/activation_policy.h"
#include "shell/managed_windows.h"

#include <vector>

namespace corvandi::testing {

/// What happened to the windows and the program's mode, in order: "make settings", "center welcome",
/// "regular" and so on.
using Events = std::vector<std::string>;

class FakeActivationPolicy : public ActivationPolicy {
public:
    explicit FakeActivationPolicy(Events& events)
        : events_(events)
    {
    }
    void set(ActivationMode mode) override
    {
        present = mode;
        events_.push_back(mode == ActivationMode::regular ? "regular" : "accessory");
    }

    std::optional<ActivationMode> present;

private:
    Events& events_;
};

/// Windows without a screen. They outlive nobody: `settings` and `welcome` are null when there is none.
class FakeWindows : public ManagedWindows {
public:
    class Window : public ManagedWindow {
    public:
        Window(std::string name, Events& events, Callback willClose, Window*& self)
            : name_(std::move(name))
            , events_(events)
            , willClose_(std::move(willClose))
            , self_(self)
        {
            self_ = this;
            events_.push_back("make " + name_);
        }
        ~Window() override { self_ = nullptr; }
        Window(const Window&) = delete;
        Window& operator=(const Window&) = delete;

        void center() override { events_.push_back("center " + name_); }
        void activate() override
        {
            events_.push_back("activate " + name_);
            isVisible_ = true;
        }
        void close() override
        {
            events_.push_back("close " + name_);
            willClose_();
            isVisible_ = false;
        }
        [[nodiscard]] bool isVisible() const override { return isVisible_; }

    private:
        std::string name_;
        Events& events_;
        Callback willClose_;
        Window*& self_;
        bool isVisible_ = false;
    };

    explicit FakeWindows(Events& events)
        : events_(events)
    {
    }

    [[nodiscard]] std::unique_ptr<ManagedWindow> makeSettingsWindow(Callback willClose) override
    {
        return std::make_unique<Window>("settings", events_, std::move(willClose), settings);
    }
    [[nodiscard]] std::unique_ptr<ManagedWindow> makeWelcomeWindow(Callback started,
                                                                   Callback willClose) override
    {
        getStarted = std::move(started);
        return std::make_unique<Window>("welcome", events_, std::move(willClose), welcome);
    }

    Window* settings = nullptr;
    Window* welcome = nullptr;
    Callback getStarted;

private:
    Events& events_;
};

} // namespace corvandi::testing
