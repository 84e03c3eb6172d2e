#pragma once

#include "base/main_queue.h"
#include "ports/focused_element.h"

#include <utility>
#include <vector>

namespace corvandi::testing {

/// A focus that is where the test sets it. A refresh is done in the next turn of the queue, or when the test
/// says so.
class FakeFocus : public FocusedElementMonitor {
public:
    explicit FakeFocus(MainQueue& queue)
        : queue_(queue)
    {
    }

    std::optional<FocusedElement> element;
    /// Refreshes wait for `endRefreshes`.
    bool refreshesAreHeld = false;
    int refreshes = 0;

    [[nodiscard]] std::optional<FocusedElement> focusedElement() override { return element; }
    [[nodiscard]] std::unique_ptr<Registration> refresh(std::function<void()> done) override
    {
        ++refreshes;
        return std::make_unique<Refresh>(*this, std::move(done));
    }
    /// Ends the refreshes that wait, and lets later ones end by themselves again.
    void endRefreshes()
    {
        refreshesAreHeld = false;
        for (Refresh* refresh : std::exchange(waiting_, {}))
            refresh->end();
    }

    void focusTextField() { element = withRole(QStringLiteral("AXTextField")); }
    void focusPasswordField()
    {
        element = withRole(QStringLiteral("AXTextField"));
        element->subrole = QStringLiteral("AXSecureTextField");
    }

    static FocusedElement withRole(const QString& role)
    {
        FocusedElement focused;
        focused.role = role;
        return focused;
    }

private:
    class Refresh : public Registration {
    public:
        Refresh(FakeFocus& focus, std::function<void()> done)
            : focus_(focus)
            , done_(std::move(done))
        {
            if (focus_.refreshesAreHeld)
                focus_.waiting_.push_back(this);
            else
                end();
        }
        ~Refresh() override { std::erase(focus_.waiting_, this); }
        Refresh(const Refresh&) = delete;
        Refresh& operator=(const Refresh&) = delete;

        void end()
        {
            turn_ = focus_.queue_.after({}, [this] {
                // It may destroy this.
                const auto call = std::move(done_);
                call();
            });
        }

    private:
        FakeFocus& focus_;
        std::function<void()> done_;
        std::unique_ptr<Timer> turn_;
    };

    MainQueue& queue_;
    std::vector<Refresh*> waiting_;
};

} // namespace corvandi::testing
