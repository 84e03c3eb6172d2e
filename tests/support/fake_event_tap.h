#pragma once

#include "ports/event_tap.h"

#include <optional>

namespace corvandi::testing {

/// A keyboard whose events the test sends, and whose taps can be refused.
class FakeEventTapFactory : public EventTapFactory {
public:
    bool refusesTaps = false;
    bool refusesNewChords = false;
    /// The chord that another program has.
    std::optional<KeyChord> heldByAnother;
    int created = 0;
    bool tapEnabled = false;
    int enableCalls = 0;
    /// The chord that the living tap watches; none without a tap.
    std::optional<KeyChord> watched;

    [[nodiscard]] std::unique_ptr<EventTap> create(const KeyChord& chord,
                                                   EventTap::Callback callback) override
    {
        if (refusesTaps || chord == heldByAnother)
            return nullptr;
        ++created;
        watched = chord;
        callback_ = std::move(callback);
        return std::make_unique<Tap>(*this);
    }

    /// Sends an event through the tap; what no tap sees is passed. A tap that watches something sees all
    /// keys, and also hears that it was switched off.
    TapVerdict send(KeyEventType type, int64_t keyCode, uint64_t flags)
    {
        const bool tellsOfDisabling =
            type == KeyEventType::tapDisabledByTimeout || type == KeyEventType::tapDisabledByUserInput;
        const bool isSeen = watched && (tapEnabled || tellsOfDisabling);
        return isSeen ? callback_({type, keyCode, flags}) : TapVerdict::pass;
    }
    TapVerdict keyDown(int64_t keyCode, uint64_t flags)
    {
        return send(KeyEventType::keyDown, keyCode, flags);
    }
    TapVerdict keyUp(int64_t keyCode, uint64_t flags) { return send(KeyEventType::keyUp, keyCode, flags); }
    TapVerdict flagsChanged(uint64_t flags) { return send(KeyEventType::flagsChanged, 58, flags); }

private:
    class Tap : public EventTap {
    public:
        explicit Tap(FakeEventTapFactory& owner)
            : owner_(owner)
        {
        }
        ~Tap() override
        {
            owner_.callback_ = nullptr;
            owner_.watched.reset();
            owner_.tapEnabled = false;
        }
        void setEnabled(bool enabled) override
        {
            owner_.tapEnabled = enabled;
            ++owner_.enableCalls;
        }
        bool watch(const KeyChord& chord) override
        {
            if (owner_.refusesNewChords || chord == owner_.heldByAnother) {
                owner_.watched.reset();
                return false;
            }
            owner_.watched = chord;
            return true;
        }

    private:
        FakeEventTapFactory& owner_;
    };

    EventTap::Callback callback_;
};

} // namespace corvandi::testing
