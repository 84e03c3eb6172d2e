#include "conformance/keyboard_suite.h"
#include "conformance/virtual_time.h"
#include "support/fake_keyboard.h"

#include <algorithm>
#include <set>

namespace corvandi::testing {
namespace {

class FakeKeyboardDriver : public OnVirtualTime<KeyboardDriver> {
public:
    [[nodiscard]] Keyboard& keyboard() override { return keyboard_; }
    void hold(Modifier modifier) override
    {
        held_.insert(modifier);
        keyboard_.keysAreFree = false;
        keyboard_.held |= flagOf(modifier);
    }
    void letGo(Modifier modifier) override
    {
        held_.erase(modifier);
        keyboard_.held &= ~flagOf(modifier);
        if (held_.empty())
            keyboard_.freeKeys();
    }
    /// Locks mean nothing to the fake.
    void strikeCapsLock() override {}
    [[nodiscard]] QString textField() override { return keyboard_.typed(); }
    [[nodiscard]] bool getsShortcut(uint16_t virtualKey, uint64_t flags) override
    {
        return wasPosted({virtualKey, KeyDirection::down, flags, {}}) &&
               wasPosted({virtualKey, KeyDirection::up, flags, {}});
    }
    [[nodiscard]] bool isToldToPaste() override
    {
        return getsShortcut(virtual_key::v, modifier_flags::command);
    }
    [[nodiscard]] std::optional<QString> impossibleText() override
    {
        keyboard_.refusesText = true;
        return QStringLiteral("text");
    }

private:
    [[nodiscard]] bool wasPosted(const SyntheticKeyEvent& event) const
    {
        return std::find(keyboard_.posted.begin(), keyboard_.posted.end(), event) != keyboard_.posted.end();
    }

    FakeKeyboard keyboard_;
    std::set<Modifier> held_;
};

INSTANTIATE_TEST_SUITE_P(Fake, KeyboardSuite, over<FakeKeyboardDriver>("Fake"));

} // namespace
} // namespace corvandi::testing
