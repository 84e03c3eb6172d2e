#pragma once

#include "ports/key_capture.h"

#include <map>
#include <set>
#include <utility>

namespace corvandi::testing {

/// A keyboard that is given away when the test allows it.
class FakeKeyCapture : public KeyCapture {
public:
    bool givesKeyboardAway = true;
    /// How often it was asked for.
    int begun = 0;
    std::map<uint32_t, uint16_t> keyCodes;
    std::set<uint32_t> modifiers;

    [[nodiscard]] std::unique_ptr<Registration>
    begin(std::function<void(const CapturedKey&)> captured) override
    {
        ++begun;
        if (!givesKeyboardAway)
            return nullptr;
        captured_ = std::move(captured);
        return std::make_unique<Held>(*this);
    }
    [[nodiscard]] std::optional<uint16_t> keyCode(uint32_t nativeCode) const override
    {
        const auto found = keyCodes.find(nativeCode);
        return found == keyCodes.end() ? std::nullopt : std::optional(found->second);
    }

    [[nodiscard]] bool isModifier(uint32_t nativeCode) const override
    {
        return modifiers.contains(nativeCode);
    }

    [[nodiscard]] bool isHeld() const { return captured_ != nullptr; }
    /// Somebody presses a key while the keyboard is held.
    void press(const CapturedKey& key)
    {
        // Called on a copy: the callback may give the keyboard back.
        const auto call = captured_;
        call(key);
    }

private:
    class Held : public Registration {
    public:
        explicit Held(FakeKeyCapture& capture)
            : capture_(capture)
        {
        }
        ~Held() override { capture_.captured_ = nullptr; }
        Held(const Held&) = delete;
        Held& operator=(const Held&) = delete;

    private:
        FakeKeyCapture& capture_;
    };

    std::function<void(const CapturedKey&)> captured_;
};

} // namespace corvandi::testing
