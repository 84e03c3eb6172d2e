#include "conformance/event_loop_time.h"
#include "conformance/event_tap_suite.h"
#include "session/x11/keys/key_witness.h"
#include "session/x11/keys/test_keyboard.h"
#include "session/x11/keys/x11_event_tap.h"
#include "support/recording_log.h"

namespace corvandi::testing {
namespace {

struct KeyOnTheServer {
    PersonsKey key;
    uint8_t code;
};
constexpr KeyOnTheServer keysOnTheServer[] = {{PersonsKey::option, key::leftAlt},
                                              {PersonsKey::control, key::leftControl},
                                              {PersonsKey::space, key::space},
                                              {PersonsKey::f6, key::f6},
                                              {PersonsKey::a, key::a}};

uint8_t codeOf(PersonsKey wanted)
{
    return std::find_if(std::begin(keysOnTheServer), std::end(keysOnTheServer),
                        [wanted](const KeyOnTheServer& entry) { return entry.key == wanted; })
        ->code;
}

/// `kind`: what a person types on, or what tests and remote sessions use.
template<TestKeyboard::Kind kind>
class X11EventTapDriver : public OnEventLoop<EventTapDriver> {
public:
    [[nodiscard]] EventTapFactory& taps() override { return taps_; }
    void press(PersonsKey key) override { keyboard_.press(codeOf(key)); }
    void release(PersonsKey key) override { keyboard_.release(codeOf(key)); }
    [[nodiscard]] std::vector<PersonsKey> reachedTheApplication() override
    {
        std::vector<PersonsKey> reached;
        for (const uint8_t code : witness_.takePresses()) {
            for (const KeyOnTheServer& entry : keysOnTheServer) {
                if (entry.code == code)
                    reached.push_back(entry.key);
            }
        }
        return reached;
    }
    void letAnotherProgramHold(const KeyChord& chord) override
    {
        otherTap_ = otherTaps_.create(chord, [](const KeyEvent&) { return TapVerdict::swallow; });
        if (!otherTap_)
            throw std::runtime_error("the other program does not get the chord");
        otherTap_->setEnabled(true);
    }

private:
    RecordingLog log_;
    WatchedChord watched_;
    WatchedChord watchedByOther_;
    X11EventTapFactory taps_{log_, watched_};
    /// A connection of its own is what makes a program another one for the server.
    X11EventTapFactory otherTaps_{log_, watchedByOther_};
    std::unique_ptr<EventTap> otherTap_;
    KeyWitness witness_;
    TestKeyboard keyboard_{kind};
};

INSTANTIATE_TEST_SUITE_P(X11Hardware, EventTapSuite,
                         over<X11EventTapDriver<TestKeyboard::Kind::hardware>>("X11"));
INSTANTIATE_TEST_SUITE_P(X11Synthetic, EventTapSuite,
                         over<X11EventTapDriver<TestKeyboard::Kind::synthetic>>("X11"));

} // namespace
} // namespace corvandi::testing
