#pragma once

#include "conformance/conformance.h"
#include "ports/keyboard.h"

#include <optional>
#include <vector>

namespace corvandi::testing {

/// A person at the keyboard, and an application with an empty text field that has the focus.
class KeyboardDriver : public PassingTime {
public:
    /// Keys that a person may still hold.
    enum class Modifier { shift, control, alt, super };

    [[nodiscard]] virtual Keyboard& keyboard() = 0;
    [[nodiscard]] static uint64_t flagOf(Modifier modifier)
    {
        switch (modifier) {
        case Modifier::shift:
            return modifier_flags::shift;
        case Modifier::control:
            return modifier_flags::control;
        case Modifier::alt:
            return modifier_flags::option;
        case Modifier::super:
            return modifier_flags::command;
        }
        return 0;
    }
    virtual void hold(Modifier modifier) = 0;
    virtual void letGo(Modifier modifier) = 0;
    /// Presses the Caps Lock key and lets it go.
    virtual void strikeCapsLock() = 0;
    /// What the text field holds now.
    [[nodiscard]] virtual QString textField() = 0;
    /// Whether the application comes to be given this key with exactly these modifiers, as a shortcut.
    [[nodiscard]] virtual bool getsShortcut(uint16_t virtualKey, uint64_t flags) = 0;
    /// Whether the application comes to be told to paste.
    [[nodiscard]] virtual bool isToldToPaste() = 0;
    /// A text that can't be typed now, nothing where every text can.
    [[nodiscard]] virtual std::optional<QString> impossibleText() = 0;
};

class KeyboardSuite : public ConformanceTest<KeyboardDriver> {
protected:
    using Modifier = KeyboardDriver::Modifier;
    static constexpr uint16_t letterA = 0;

    /// Posts a text in events of a few characters, as an insertion does.
    static void post(KeyEventSource& source, const QString& text)
    {
        constexpr qsizetype charactersPerEvent = 5;
        for (qsizetype start = 0; start < text.size(); start += charactersPerEvent) {
            for (const KeyDirection direction : {KeyDirection::down, KeyDirection::up}) {
                auto event = source.makeKeyEvent(virtual_key::none, direction);
                ASSERT_TRUE(event);
                event->text = text.mid(start, charactersPerEvent).toStdU16String();
                source.post(*event);
            }
        }
    }
    void type(const QString& text)
    {
        const auto source = driver.keyboard().createSource(text);
        ASSERT_NE(source, nullptr);
        post(*source, text);
    }
    void strike(uint16_t virtualKey, uint64_t flags)
    {
        const auto source = driver.keyboard().createSource(QString());
        ASSERT_NE(source, nullptr);
        for (const KeyDirection direction : {KeyDirection::down, KeyDirection::up}) {
            auto event = source->makeKeyEvent(virtualKey, direction);
            ASSERT_TRUE(event);
            event->flags = flags;
            source->post(*event);
        }
    }
    void expectTyped(const QString& expected)
    {
        EXPECT_TRUE(driver.until([&] { return driver.textField() == expected; }))
            << driver.textField().toStdString();
    }
    [[nodiscard]] std::unique_ptr<Registration> waitForFreeKeys()
    {
        return driver.keyboard().whenKeysAreFree([this] { ++calls; });
    }

    int calls = 0;
};

TEST_P(KeyboardSuite, AModifierIsKnownToBeHeldWhileItIs)
{
    constexpr uint64_t all =
        modifier_flags::shift | modifier_flags::control | modifier_flags::option | modifier_flags::command;
    for (const Modifier modifier : {Modifier::shift, Modifier::control, Modifier::alt, Modifier::super}) {
        const uint64_t flag = KeyboardDriver::flagOf(modifier);
        EXPECT_FALSE(driver.keyboard().isAnyHeld(all));
        driver.hold(modifier);
        EXPECT_TRUE(driver.until([&] { return driver.keyboard().isAnyHeld(flag); }));
        EXPECT_TRUE(driver.keyboard().isAnyHeld(all));
        EXPECT_FALSE(driver.keyboard().isAnyHeld(all & ~flag));
        driver.letGo(modifier);
        EXPECT_TRUE(driver.until([&] { return !driver.keyboard().isAnyHeld(all); }));
    }
}

TEST_P(KeyboardSuite, ATextArrivesExactlyAndInOrder)
{
    const QString text = QStringLiteral("The quick fox, 1 lazy dog? Größe: „5 €“ … 你好, Ж!\nnew line");
    type(text);
    expectTyped(text);
}

TEST_P(KeyboardSuite, OneTextArrivesBehindTheOther)
{
    type(QStringLiteral("One, "));
    type(QStringLiteral("zwei. "));
    type(QStringLiteral("Trois!"));
    expectTyped(QStringLiteral("One, zwei. Trois!"));
}

TEST_P(KeyboardSuite, AKeyUpTypesNothing)
{
    {
        const auto source = driver.keyboard().createSource(QStringLiteral("ab"));
        ASSERT_NE(source, nullptr);
        auto event = source->makeKeyEvent(virtual_key::none, KeyDirection::up);
        ASSERT_TRUE(event);
        event->text = u"a";
        source->post(*event);
        post(*source, QStringLiteral("b"));
    }
    expectTyped(QStringLiteral("b"));
}

TEST_P(KeyboardSuite, ANewEventHasNeitherFlagsNorText)
{
    const auto source = driver.keyboard().createSource(QString());
    ASSERT_NE(source, nullptr);
    for (const KeyDirection direction : {KeyDirection::down, KeyDirection::up}) {
        EXPECT_EQ(source->makeKeyEvent(letterA, direction), (SyntheticKeyEvent{letterA, direction, 0, {}}));
        EXPECT_EQ(source->makeKeyEvent(virtual_key::v, direction),
                  (SyntheticKeyEvent{virtual_key::v, direction, 0, {}}));
    }
}

TEST_P(KeyboardSuite, MakingASourceAndEventsTypesNothing)
{
    {
        const auto source = driver.keyboard().createSource(QStringLiteral("text"));
        ASSERT_NE(source, nullptr);
        EXPECT_TRUE(source->makeKeyEvent(letterA, KeyDirection::down));
    }
    driver.settle();
    EXPECT_EQ(driver.textField(), QString());
}

TEST_P(KeyboardSuite, ATextThatCannotBeTypedIsRefusedWholeAndDoesNotHinderOthers)
{
    const auto text = driver.impossibleText();
    if (!text)
        GTEST_SKIP() << "every text can be typed here";
    EXPECT_EQ(driver.keyboard().createSource(*text), nullptr);
    EXPECT_NE(driver.keyboard().createSource(QString()), nullptr);
    driver.settle();
    EXPECT_EQ(driver.textField(), QString());
}

TEST_P(KeyboardSuite, AModifierThatIsStillHeldDoesNotGetIntoTheText)
{
    const QString text = QStringLiteral("keep this, größe too. ");
    QString expected;
    for (const Modifier held : {Modifier::shift, Modifier::control, Modifier::alt, Modifier::super}) {
        driver.hold(held);
        type(text);
        expected += text;
        expectTyped(expected);
        driver.letGo(held);
    }
    type(text);
    expectTyped(expected + text);
}

TEST_P(KeyboardSuite, CapsLockDoesNotGetIntoTheText)
{
    driver.strikeCapsLock();
    type(QStringLiteral("Hello wörld"));
    expectTyped(QStringLiteral("Hello wörld"));
    driver.strikeCapsLock();
}

TEST_P(KeyboardSuite, AKeyBearsTheModifiersThatItIsGiven)
{
    strike(letterA, modifier_flags::control | modifier_flags::option);
    EXPECT_TRUE(driver.getsShortcut(letterA, modifier_flags::control | modifier_flags::option));
}

TEST_P(KeyboardSuite, AKeyDoesNotBearTheModifiersThatAPersonHolds)
{
    driver.hold(Modifier::alt);
    strike(letterA, modifier_flags::control);
    EXPECT_TRUE(driver.getsShortcut(letterA, modifier_flags::control));
    driver.letGo(Modifier::alt);
}

TEST_P(KeyboardSuite, CommandWithVIsThePasteShortcut)
{
    strike(virtual_key::v, modifier_flags::command);
    EXPECT_TRUE(driver.isToldToPaste());
    EXPECT_EQ(driver.textField(), QString());
}

TEST_P(KeyboardSuite, FreeKeysAreReportedInsideTheCall)
{
    const auto registration = waitForFreeKeys();
    EXPECT_EQ(calls, 1);
    driver.settle();
    EXPECT_EQ(calls, 1);
}

TEST_P(KeyboardSuite, EveryModifierIsWaitedFor)
{
    for (const Modifier held : {Modifier::shift, Modifier::control, Modifier::alt, Modifier::super}) {
        calls = 0;
        driver.hold(held);
        const auto registration = waitForFreeKeys();
        driver.settle();
        EXPECT_EQ(calls, 0);
        driver.letGo(held);
        EXPECT_TRUE(driver.until([this] { return calls == 1; }));
    }
}

TEST_P(KeyboardSuite, TheLastOfSeveralHeldModifiersIsWaitedForAndReportedOnce)
{
    driver.hold(Modifier::alt);
    driver.hold(Modifier::shift);
    const auto registration = waitForFreeKeys();
    driver.letGo(Modifier::alt);
    driver.settle();
    EXPECT_EQ(calls, 0);
    driver.letGo(Modifier::shift);
    EXPECT_TRUE(driver.until([this] { return calls == 1; }));
    driver.hold(Modifier::shift);
    driver.letGo(Modifier::shift);
    driver.settle();
    EXPECT_EQ(calls, 1);
}

TEST_P(KeyboardSuite, AllThatWaitForFreeKeysAreToldSaveThoseThatHaveGone)
{
    driver.hold(Modifier::alt);
    auto gone = driver.keyboard().whenKeysAreFree([] { ADD_FAILURE() << "told after it had gone"; });
    const auto first = waitForFreeKeys();
    const auto second = waitForFreeKeys();
    gone.reset();
    driver.letGo(Modifier::alt);
    EXPECT_TRUE(driver.until([this] { return calls == 2; }));
    driver.settle();
    EXPECT_EQ(calls, 2);
}

} // namespace corvandi::testing
