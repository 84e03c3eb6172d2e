#pragma once

#include "session/x11/keys/key_witness.h"
#include "session/x11/keys/test_keyboard.h"
#include "session/x11/keys/x11_event_tap.h"
#include "session/x11/keys/x11_session.h"
#include "support/event_loop.h"
#include "support/recording_log.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace corvandi::testing {

/// An application with the focus, and a tap.
class TapFixture : public ::testing::Test {
protected:
    void install(const KeyChord& chord = {})
    {
        tap = create(chord);
        ASSERT_NE(tap, nullptr);
        tap->setEnabled(true);
    }

    std::unique_ptr<EventTap> create(const KeyChord& chord)
    {
        return taps.create(chord, [this](const KeyEvent& event) {
            events.push_back(event);
            return TapVerdict::pass;
        });
    }

    [[nodiscard]] auto count(KeyEventType type) const
    {
        return std::count_if(events.begin(), events.end(),
                             [type](const KeyEvent& event) { return event.type == type; });
    }

    /// Waits until the tap has reported this event.
    [[nodiscard]] bool hears(KeyEventType type, long times = 1)
    {
        return waitUntil([&] { return count(type) >= times; });
    }

    /// Presses the chord's key and its modifier, waits for the tap, and releases both.
    [[nodiscard]] bool strikeIsHeard(TestKeyboard& keyboard, uint8_t modifier, uint8_t keyCode)
    {
        events.clear();
        keyboard.press(modifier);
        keyboard.press(keyCode);
        const bool down = hears(KeyEventType::keyDown);
        keyboard.release(keyCode);
        const bool up = hears(KeyEventType::keyUp);
        keyboard.release(modifier);
        return down && up;
    }

    RecordingLog log;
    WatchedChord watched;
    X11EventTapFactory taps{log, watched};
    std::vector<KeyEvent> events;
    std::unique_ptr<EventTap> tap;
    KeyWitness witness;
};

} // namespace corvandi::testing
