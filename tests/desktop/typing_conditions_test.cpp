// Texts arrive as they are in whatever state a person's keyboard is.

#include "typing_fixture.h"

#include "session/x11/keys/keyboard_state.h"
#include "support/event_loop.h"

#include <array>

namespace corvandi::testing {
namespace {

using namespace std::chrono_literals;

const QString sentence = QStringLiteral("Größe „Zwölf“: 7 yellow llamas – WITH Ça & 你好 😀! ");

class TypingConditionsTest : public TypingEverywhereTest {
protected:
    /// Some sentences: long enough to be under way for a while.
    const QString text = sentence.repeated(5);
};

INSTANTIATE_TEST_SUITE_P(Everywhere, TypingConditionsTest,
                         ::testing::Values(TargetKind::terminal, TargetKind::gtkField, TargetKind::qtField),
                         [](const auto& test) { return nameOf(test.param); });

TEST_P(TypingConditionsTest, AnotherLayoutBetweenTwoTextsTakesNothingAway)
{
    QString expected;
    for (const char* layout : {"us", "de", "fr", "us"}) {
        ASSERT_TRUE(setLayout(QLatin1String(layout)));
        ASSERT_TRUE(desk.insert(text));
        EXPECT_TRUE(holds(expected += text)) << layout;
    }
}

TEST_P(TypingConditionsTest, TheGroupInUseMayChangeBetweenTwoTexts)
{
    ASSERT_TRUE(setLayout(QStringLiteral("us,de")));
    QString expected;
    for (const uint8_t group : std::array<uint8_t, 3>{0, 1, 0}) {
        desk.setGroup(group);
        ASSERT_TRUE(desk.insert(text));
        EXPECT_TRUE(holds(expected += text)) << int{group};
    }
}

TEST_P(TypingConditionsTest, NumLockAndCapsLockChangeNothingAndStay)
{
    constexpr uint8_t both = x11_mask::lock | x11_mask::numLock;
    desk.setLocks(both);
    ASSERT_TRUE(desk.insert(text));
    EXPECT_TRUE(holds(text));
    EXPECT_EQ(desk.locks(), both);
}

TEST_P(TypingConditionsTest, AModifierThatWaitsForTheNextKeyChangesNothing)
{
    ASSERT_TRUE(desk.setAccessibility(keyboard_control::stickyKeys));
    desk.person().strike(key::leftShift);
    ASSERT_EQ(readState(desk.person().connection())->latched, x11_mask::shift);
    const QString lower = QStringLiteral("lower ") + text;
    ASSERT_TRUE(desk.insert(lower));
    EXPECT_TRUE(holds(lower));
    EXPECT_EQ(desk.accessibility(), keyboard_control::stickyKeys);
}

TEST_P(TypingConditionsTest, HelpsForThePersonsKeysDoNotTouchTheTextAndStay)
{
    ASSERT_TRUE(desk.setAccessibility(keyboard_control::all));
    ASSERT_TRUE(desk.insert(text));
    EXPECT_TRUE(holds(text));
    EXPECT_EQ(desk.accessibility(), keyboard_control::all);
}

struct HeldKey {
    const char* name;
    uint8_t keyCode;
};

/// On a German layout, where the right Alt key is AltGr.
constexpr std::array heldKeys{HeldKey{"Alt", key::leftAlt}, HeldKey{"Control", key::leftControl},
                              HeldKey{"Shift", key::leftShift}, HeldKey{"Super", key::leftSuper},
                              HeldKey{"AltGr", 108}};

class TypingWhileHeldTest : public TypingConditionsTest {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(setLayout(QStringLiteral("de")));
        TypingConditionsTest::SetUp();
    }

    /// Adds a text and waits for all of them.
    [[nodiscard]] ::testing::AssertionResult arrives(const QString& added)
    {
        if (!desk.insert(added))
            return ::testing::AssertionFailure() << "nothing was typed";
        return holds(expected += added);
    }
    [[nodiscard]] uint8_t heldModifiers()
    {
        const auto state = readState(desk.person().connection());
        return state ? state->held : x11_mask::all;
    }

    QString expected;
};

INSTANTIATE_TEST_SUITE_P(Everywhere, TypingWhileHeldTest,
                         ::testing::Values(TargetKind::terminal, TargetKind::gtkField, TargetKind::qtField),
                         [](const auto& test) { return nameOf(test.param); });

TEST_P(TypingWhileHeldTest, NothingBecomesAShortcutOrACapital)
{
    for (const HeldKey& held : heldKeys) {
        desk.person().press(held.keyCode);
        EXPECT_TRUE(arrives(text)) << held.name;
        desk.person().release(held.keyCode);
        // No menu has been opened either: the next text arrives as well.
        EXPECT_TRUE(arrives(sentence)) << held.name;
        EXPECT_EQ(heldModifiers(), x11_mask::none) << held.name;
    }
}

TEST_P(TypingWhileHeldTest, WhatIsPressedBetweenTwoPartsOfALongTextDoesNotReachTheRest)
{
    for (const HeldKey& held : heldKeys) {
        const auto inserted = desk.begin(text);
        // The server has dealt with the first part when this has been answered.
        bool areFree = false;
        const auto registration = desk.keyboard().whenKeysAreFree([&] { areFree = true; });
        ASSERT_TRUE(areFree);
        desk.person().press(held.keyCode);
        ASSERT_TRUE(waitUntil([&] { return inserted->has_value(); }, 10s));
        desk.person().release(held.keyCode);
        expected += text;
        EXPECT_TRUE(arrives(sentence)) << held.name;
        EXPECT_EQ(heldModifiers(), x11_mask::none) << held.name;
    }
}

} // namespace
} // namespace corvandi::testing
