#pragma once

#include "conformance/conformance.h"
#include "ports/event_tap.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

namespace corvandi::testing {

/// The keys that a suite presses.
enum class PersonsKey { option, control, space, f6, a };

/// A person at the keyboard, an application that has the focus, and other programs.
class EventTapDriver : public PassingTime {
public:
    [[nodiscard]] virtual EventTapFactory& taps() = 0;
    virtual void press(PersonsKey key) = 0;
    virtual void release(PersonsKey key) = 0;
    /// The keys without the modifiers whose presses have reached the application since the last call. What
    /// was pressed before this call, and is not held up, is included without time passing.
    [[nodiscard]] virtual std::vector<PersonsKey> reachedTheApplication() = 0;
    /// Has another program hold `chord` in such a way that a tap for it is refused, until the test is over.
    virtual void letAnotherProgramHold(const KeyChord& chord) = 0;
};

class EventTapSuite : public ConformanceTest<EventTapDriver> {
protected:
    static constexpr KeyChord optionSpace{49, modifier_flags::option};
    static constexpr KeyChord controlF6{97, modifier_flags::control};
    static constexpr uint64_t allModifiers =
        modifier_flags::command | modifier_flags::option | modifier_flags::control | modifier_flags::shift;

    /// A tap that swallows its chord, as a hotkey does; it is off.
    void create(const KeyChord& chord)
    {
        wanted = chord;
        tap = driver.taps().create(chord, [this](const KeyEvent& event) {
            events.push_back(event);
            return event.keyCode == wanted.keyCode ? TapVerdict::swallow : TapVerdict::pass;
        });
        ASSERT_NE(tap, nullptr);
    }
    void install(const KeyChord& chord)
    {
        create(chord);
        tap->setEnabled(true);
    }
    [[nodiscard]] bool watch(const KeyChord& chord)
    {
        wanted = chord;
        return tap->watch(chord);
    }

    [[nodiscard]] auto count(KeyEventType type, const KeyChord& chord) const
    {
        return std::count_if(events.begin(), events.end(), [&](const KeyEvent& event) {
            return event.type == type && event.keyCode == chord.keyCode;
        });
    }
    [[nodiscard]] bool hears(KeyEventType type, const KeyChord& chord)
    {
        return driver.until([&] { return count(type, chord) > 0; });
    }
    void strike(PersonsKey modifier, PersonsKey key)
    {
        driver.press(modifier);
        driver.press(key);
        driver.release(key);
        driver.release(modifier);
    }
    /// Whether the chord is reported, down before up, and kept from the application.
    void expectWatched(const KeyChord& chord, PersonsKey modifier, PersonsKey key)
    {
        events.clear();
        (void)driver.reachedTheApplication();
        driver.press(modifier);
        driver.press(key);
        EXPECT_TRUE(hears(KeyEventType::keyDown, chord));
        EXPECT_EQ(count(KeyEventType::keyUp, chord), 0);
        driver.release(key);
        EXPECT_TRUE(hears(KeyEventType::keyUp, chord));
        driver.release(modifier);
        EXPECT_THAT(driver.reachedTheApplication(), ::testing::Not(::testing::Contains(key)));
    }
    /// Whether the chord goes to the application, and the tap tells nothing of it.
    void expectLeftAlone(const KeyChord& chord, PersonsKey modifier, PersonsKey key)
    {
        events.clear();
        (void)driver.reachedTheApplication();
        strike(modifier, key);
        EXPECT_THAT(driver.reachedTheApplication(), ::testing::Contains(key));
        driver.settle();
        EXPECT_EQ(count(KeyEventType::keyDown, chord), 0);
        EXPECT_EQ(count(KeyEventType::keyUp, chord), 0);
    }

    KeyChord wanted;
    std::vector<KeyEvent> events;
    std::unique_ptr<EventTap> tap;
};

TEST_P(EventTapSuite, ANewTapIsOff)
{
    create(optionSpace);
    strike(PersonsKey::option, PersonsKey::space);
    EXPECT_THAT(driver.reachedTheApplication(), ::testing::Contains(PersonsKey::space));
    driver.settle();
    EXPECT_TRUE(events.empty());
}

TEST_P(EventTapSuite, TheChordIsReportedAndKeptFromTheApplication)
{
    install(optionSpace);
    expectWatched(optionSpace, PersonsKey::option, PersonsKey::space);
    expectWatched(optionSpace, PersonsKey::option, PersonsKey::space);
}

TEST_P(EventTapSuite, AReportedKeyTellsWhichModifiersAreHeld)
{
    install(optionSpace);
    driver.press(PersonsKey::control);
    expectWatched(optionSpace, PersonsKey::option, PersonsKey::space);
    driver.release(PersonsKey::control);
    for (const KeyEvent& event : events) {
        if (event.type == KeyEventType::keyDown) {
            EXPECT_EQ(event.flags & allModifiers, modifier_flags::option | modifier_flags::control);
        }
    }
}

TEST_P(EventTapSuite, AModifierThatIsLetGoWhileTheChordIsHeldIsReportedInItsTurn)
{
    install(optionSpace);
    driver.press(PersonsKey::option);
    driver.press(PersonsKey::space);
    ASSERT_TRUE(hears(KeyEventType::keyDown, optionSpace));
    events.clear();

    driver.release(PersonsKey::option);
    driver.release(PersonsKey::space);
    ASSERT_TRUE(hears(KeyEventType::keyUp, optionSpace));
    EXPECT_EQ(events.front().type, KeyEventType::flagsChanged);
    EXPECT_EQ(events.front().flags & allModifiers, 0U);
    EXPECT_THAT(driver.reachedTheApplication(), ::testing::Not(::testing::Contains(PersonsKey::space)));
}

TEST_P(EventTapSuite, AModifierThatIsAddedWhileTheChordIsHeldIsReported)
{
    install(optionSpace);
    driver.press(PersonsKey::option);
    driver.press(PersonsKey::space);
    ASSERT_TRUE(hears(KeyEventType::keyDown, optionSpace));
    driver.press(PersonsKey::control);
    EXPECT_TRUE(driver.until([this] {
        return events.back().type == KeyEventType::flagsChanged &&
               (events.back().flags & allModifiers) == (modifier_flags::option | modifier_flags::control);
    }));
    driver.release(PersonsKey::control);
    driver.release(PersonsKey::space);
    driver.release(PersonsKey::option);
}

TEST_P(EventTapSuite, OtherKeysReachTheApplicationWhileTheChordIsHeld)
{
    install(optionSpace);
    driver.press(PersonsKey::option);
    driver.press(PersonsKey::space);
    ASSERT_TRUE(hears(KeyEventType::keyDown, optionSpace));
    driver.press(PersonsKey::a);
    driver.release(PersonsKey::a);
    EXPECT_THAT(driver.reachedTheApplication(), ::testing::Contains(PersonsKey::a));
    driver.release(PersonsKey::space);
    driver.release(PersonsKey::option);
}

TEST_P(EventTapSuite, ATapThatHasNotAnsweredYetHoldsNoKeyBackOnceTheChordIsLetGo)
{
    install(optionSpace);
    driver.press(PersonsKey::option);
    driver.press(PersonsKey::space);
    driver.release(PersonsKey::space);
    driver.release(PersonsKey::option);
    driver.press(PersonsKey::a);
    driver.release(PersonsKey::a);
    EXPECT_THAT(driver.reachedTheApplication(), ::testing::Contains(PersonsKey::a));
}

TEST_P(EventTapSuite, ATapThatIsSwitchedOffLeavesTheChordAlone)
{
    install(optionSpace);
    tap->setEnabled(false);
    expectLeftAlone(optionSpace, PersonsKey::option, PersonsKey::space);
    tap->setEnabled(true);
    expectWatched(optionSpace, PersonsKey::option, PersonsKey::space);
}

TEST_P(EventTapSuite, ADestroyedTapGivesTheChordBack)
{
    install(optionSpace);
    tap.reset();
    expectLeftAlone(optionSpace, PersonsKey::option, PersonsKey::space);
    install(optionSpace);
    expectWatched(optionSpace, PersonsKey::option, PersonsKey::space);
}

TEST_P(EventTapSuite, AnotherChordIsWatchedInPlaceOfThePresentOne)
{
    install(optionSpace);
    ASSERT_TRUE(watch(controlF6));
    expectWatched(controlF6, PersonsKey::control, PersonsKey::f6);
    (void)driver.reachedTheApplication();
    strike(PersonsKey::option, PersonsKey::space);
    EXPECT_THAT(driver.reachedTheApplication(), ::testing::Contains(PersonsKey::space));
}

TEST_P(EventTapSuite, ATapThatIsOffStaysOffWithAnotherChord)
{
    create(optionSpace);
    ASSERT_TRUE(watch(controlF6));
    expectLeftAlone(controlF6, PersonsKey::control, PersonsKey::f6);
    tap->setEnabled(true);
    expectWatched(controlF6, PersonsKey::control, PersonsKey::f6);
}

TEST_P(EventTapSuite, AChordThatAnotherProgramHoldsIsRefused)
{
    driver.letAnotherProgramHold(optionSpace);
    EXPECT_EQ(driver.taps().create(optionSpace, [](const KeyEvent&) { return TapVerdict::pass; }), nullptr);
    install(controlF6);
    expectWatched(controlF6, PersonsKey::control, PersonsKey::f6);
}

TEST_P(EventTapSuite, AfterARefusedChangeNothingIsWatched)
{
    driver.letAnotherProgramHold(optionSpace);
    install(controlF6);
    EXPECT_FALSE(tap->watch(optionSpace));
    expectLeftAlone(controlF6, PersonsKey::control, PersonsKey::f6);
}

TEST_P(EventTapSuite, AfterARefusedChangeAChordThatIsFreeIsWatched)
{
    driver.letAnotherProgramHold(optionSpace);
    install(controlF6);
    EXPECT_FALSE(tap->watch(optionSpace));
    EXPECT_TRUE(tap->watch(controlF6));
    expectWatched(controlF6, PersonsKey::control, PersonsKey::f6);
}

} // namespace corvandi::testing
