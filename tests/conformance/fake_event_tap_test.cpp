#include "conformance/event_tap_suite.h"
#include "conformance/virtual_time.h"
#include "support/fake_event_tap.h"

namespace corvandi::testing {
namespace {

class FakeEventTapDriver : public OnVirtualTime<EventTapDriver> {
public:
    [[nodiscard]] EventTapFactory& taps() override { return taps_; }
    void press(PersonsKey key) override
    {
        flags_ |= modifierOf(key);
        if (modifierOf(key))
            taps_.flagsChanged(flags_);
        else if (taps_.keyDown(codeOf(key), flags_) == TapVerdict::pass)
            reached_.push_back(key);
    }
    void release(PersonsKey key) override
    {
        flags_ &= ~modifierOf(key);
        if (modifierOf(key))
            taps_.flagsChanged(flags_);
        else
            taps_.keyUp(codeOf(key), flags_);
    }
    [[nodiscard]] std::vector<PersonsKey> reachedTheApplication() override
    {
        return std::exchange(reached_, {});
    }
    void letAnotherProgramHold(const KeyChord& chord) override { taps_.heldByAnother = chord; }

private:
    static uint64_t modifierOf(PersonsKey key)
    {
        switch (key) {
        case PersonsKey::option:
            return modifier_flags::option;
        case PersonsKey::control:
            return modifier_flags::control;
        case PersonsKey::space:
        case PersonsKey::f6:
        case PersonsKey::a:
            break;
        }
        return 0;
    }
    static int64_t codeOf(PersonsKey key)
    {
        switch (key) {
        case PersonsKey::option:
            return 58;
        case PersonsKey::control:
            return 59;
        case PersonsKey::space:
            return 49;
        case PersonsKey::f6:
            return 97;
        case PersonsKey::a:
            break;
        }
        return 0;
    }

    FakeEventTapFactory taps_;
    uint64_t flags_ = 0;
    std::vector<PersonsKey> reached_;
};

INSTANTIATE_TEST_SUITE_P(Fake, EventTapSuite, over<FakeEventTapDriver>("Fake"));

} // namespace
} // namespace corvandi::testing
