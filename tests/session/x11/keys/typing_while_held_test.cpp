#include "session/x11/keys/typing_fixture.h"

#include "session/x11/keys/x11_event_tap.h"
#include "support/event_loop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace corvandi::testing {
namespace {

using namespace std::chrono_literals;

/// Text is typed while a person holds the chord: on a keyboard of their own, and on the one for
/// synthetic keys, where typing plays as well.
class TypingWhileTheChordIsHeldTest : public TypingFixture,
                                      public ::testing::WithParamInterface<TestKeyboard::Kind> {
protected:
    void SetUp() override
    {
        tap = taps.create({}, [this](const KeyEvent& event) {
            events.push_back(event);
            return TapVerdict::pass;
        });
        ASSERT_NE(tap, nullptr);
        tap->setEnabled(true);
        hand.press(key::leftAlt);
        hand.press(key::space);
        ASSERT_TRUE(heard([](const KeyEvent& event) { return event.type == KeyEventType::keyDown; }));
        events.clear();
        ASSERT_TRUE(type(text));
    }

    static bool endsThePress(const KeyEvent& event)
    {
        return event.type == KeyEventType::keyUp ||
               (event.type == KeyEventType::flagsChanged && !(event.flags & modifier_flags::option));
    }
    template<class Predicate>
    [[nodiscard]] bool heard(Predicate predicate)
    {
        return waitUntil([&] { return std::any_of(events.begin(), events.end(), predicate); });
    }

    const QString text = QStringLiteral("One Two, three é");
    X11EventTapFactory taps{log, watched};
    std::vector<KeyEvent> events;
    std::unique_ptr<EventTap> tap;
    TestKeyboard hand{GetParam()};
};

TEST_P(TypingWhileTheChordIsHeldTest, TheTextArrivesAndThePressGoesOn)
{
    EXPECT_TRUE(target.comesToHold(text));
    runFor(50ms);
    EXPECT_TRUE(std::none_of(events.begin(), events.end(), endsThePress));
}

TEST_P(TypingWhileTheChordIsHeldTest, LettingGoOfTheModifierEndsThePress)
{
    ASSERT_TRUE(target.comesToHold(text));
    hand.release(key::leftAlt);
    EXPECT_TRUE(heard([](const KeyEvent& event) {
        return event.type == KeyEventType::flagsChanged && !(event.flags & modifier_flags::option);
    }));
}

TEST_P(TypingWhileTheChordIsHeldTest, LettingGoOfTheKeyEndsThePress)
{
    ASSERT_TRUE(target.comesToHold(text));
    hand.release(key::space);
    EXPECT_TRUE(heard([](const KeyEvent& event) { return event.type == KeyEventType::keyUp; }));
}

TEST_P(TypingWhileTheChordIsHeldTest, TheNextPressIsHeardAgain)
{
    ASSERT_TRUE(target.comesToHold(text));
    hand.release(key::space);
    hand.release(key::leftAlt);
    ASSERT_TRUE(heard(endsThePress));
    events.clear();
    hand.press(key::leftAlt);
    hand.press(key::space);
    EXPECT_TRUE(heard([](const KeyEvent& event) { return event.type == KeyEventType::keyDown; }));
}

INSTANTIATE_TEST_SUITE_P(OnEachKindOfKeyboard, TypingWhileTheChordIsHeldTest,
                         ::testing::Values(TestKeyboard::Kind::hardware, TestKeyboard::Kind::synthetic));

} // namespace
} // namespace corvandi::testing
