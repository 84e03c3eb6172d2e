#pragma once

#include "ports/keyboard.h"

#include <utility>
#include <vector>

namespace corvandi::testing {

/// A keyboard that records what is posted.
class FakeKeyboard : public Keyboard {
public:
    bool hasSources = true;
    /// Whether sources for a text are refused while those for shortcuts are given.
    bool refusesText = false;
    /// How many events the sources can still make; unlimited by default.
    size_t eventsLeft = SIZE_MAX;
    /// How many sources hold the keyboard.
    int sources = 0;
    bool keysAreFree = true;
    /// The modifiers that somebody has told to be down.
    uint64_t held = 0;
    std::vector<SyntheticKeyEvent> posted;
    std::function<void()> onPost;

    [[nodiscard]] std::unique_ptr<KeyEventSource> createSource(const QString& text) override
    {
        if (!hasSources || (refusesText && !text.isEmpty()))
            return nullptr;
        return std::make_unique<Source>(*this);
    }

    [[nodiscard]] bool isAnyHeld(uint64_t flags) override { return (held & flags) != 0; }
    [[nodiscard]] std::unique_ptr<Registration> whenKeysAreFree(std::function<void()> callback) override
    {
        auto waiter = std::make_unique<Waiter>(*this);
        if (keysAreFree)
            callback();
        else
            waiting_.emplace_back(waiter.get(), std::move(callback));
        return waiter;
    }

    [[nodiscard]] bool isAwaited() const { return !waiting_.empty(); }
    /// The last modifier goes up.
    void freeKeys()
    {
        keysAreFree = true;
        held = 0;
        // A callback may end the waiting of others.
        while (!waiting_.empty()) {
            const auto callback = std::move(waiting_.front().second);
            waiting_.erase(waiting_.begin());
            callback();
        }
    }
    /// The text of all key-downs together.
    [[nodiscard]] QString typed() const
    {
        QString text;
        for (const SyntheticKeyEvent& event : posted) {
            if (event.direction == KeyDirection::down)
                text += QString::fromStdU16String(event.text);
        }
        return text;
    }

private:
    class Source : public KeyEventSource {
    public:
        explicit Source(FakeKeyboard& owner)
            : owner_(owner)
        {
            ++owner_.sources;
        }
        ~Source() override { --owner_.sources; }
        [[nodiscard]] std::optional<SyntheticKeyEvent> makeKeyEvent(uint16_t virtualKey,
                                                                    KeyDirection direction) override
        {
            if (owner_.eventsLeft == 0)
                return std::nullopt;
            --owner_.eventsLeft;
            return SyntheticKeyEvent{virtualKey, direction, 0, {}};
        }
        void post(const SyntheticKeyEvent& event) override
        {
            owner_.posted.push_back(event);
            if (owner_.onPost)
                owner_.onPost();
        }

    private:
        FakeKeyboard& owner_;
    };

    class Waiter : public Registration {
    public:
        explicit Waiter(FakeKeyboard& owner)
            : owner_(owner)
        {
        }
        ~Waiter() override
        {
            std::erase_if(owner_.waiting_, [this](const auto& waiting) { return waiting.first == this; });
        }

    private:
        FakeKeyboard& owner_;
    };

    /// In the order in which they came.
    std::vector<std::pair<const Registration*, std::function<void()>>> waiting_;
};

} // namespace corvandi::testing
