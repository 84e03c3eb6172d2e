#include "session/x11/keys/typing_fixture.h"

#include "core/insertion/text_injector.h"
#include "session/x11/keys/x11_event_tap.h"
#include "support/event_loop.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <thread>

namespace corvandi::testing {
namespace {

using namespace std::chrono_literals;
using std::chrono::microseconds;

constexpr uint8_t letterQ = 24;

/// A person at a keyboard of their own, who does whatever comes into their head: the hotkey, modifiers, and
/// the letter Q with and without them.
class Hands {
public:
    /// `heard` counts the presses that the program has heard.
    Hands(unsigned seed, const std::atomic<int>& heard)
        : random_(seed)
        , heard_(heard)
        , hotkeys_(heard)
        , hotkeysBefore_(heard)
        , thread_([this] { play(); })
    {
    }
    ~Hands() { rest(); }

    /// Lets go of everything. The number of times that the hotkey was pressed.
    int rest()
    {
        isTired_ = true;
        (void)waitUntil([this] { return isDone_.load(); });
        if (thread_.joinable())
            thread_.join();
        return hotkeys_ - hotkeysBefore_;
    }

private:
    void play()
    {
        TestKeyboard keyboard(TestKeyboard::Kind::hardware);
        while (!isTired_) {
            switch (random_() % 5) {
            case 0:
            case 1:
                pressHotkey(keyboard);
                break;
            case 2:
                whileHolding(keyboard, key::leftShift);
                break;
            case 3:
                whileHolding(keyboard, key::leftControl);
                break;
            default:
                strikeQ(keyboard);
            }
            pause(5ms);
        }
        isDone_ = true;
    }

    void pressHotkey(TestKeyboard& keyboard)
    {
        keyboard.press(key::leftAlt);
        pause(random_() % 2 ? 1ms : 15ms);
        keyboard.press(key::space);
        ++hotkeys_;
        // A tap that is over before a busy machine lets the program see it is another matter: its Alt opens a
        // menu of the application.
        for (int i = 0; heard_ < hotkeys_ && i < 2000; ++i)
            std::this_thread::sleep_for(1ms);
        pause(random_() % 4 ? 60ms : 250ms);
        const bool keyFirst = random_() % 2;
        keyboard.release(keyFirst ? key::space : key::leftAlt);
        pause(10ms);
        keyboard.release(keyFirst ? key::leftAlt : key::space);
    }
    void whileHolding(TestKeyboard& keyboard, uint8_t modifier)
    {
        keyboard.press(modifier);
        pause(10ms);
        if (random_() % 2)
            strikeQ(keyboard);
        pause(10ms);
        keyboard.release(modifier);
    }
    void strikeQ(TestKeyboard& keyboard)
    {
        keyboard.press(letterQ);
        pause(random_() % 4 ? 20ms : 250ms);
        keyboard.release(letterQ);
    }
    void pause(microseconds longest)
    {
        std::this_thread::sleep_for(microseconds(
            static_cast<microseconds::rep>(random_() % static_cast<unsigned>(longest.count() + 1))));
    }

    std::mt19937 random_;
    std::atomic<bool> isTired_ = false;
    std::atomic<bool> isDone_ = false;
    const std::atomic<int>& heard_;
    int hotkeys_;
    int hotkeysBefore_;
    std::thread thread_;
};

class TypingAmongHandsTest : public TypingFixture {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(run(QStringLiteral("xset"), {QStringLiteral("r"), QStringLiteral("rate"),
                                                 QStringLiteral("150"), QStringLiteral("100")}));
        tap = taps.create({}, [this](const KeyEvent& event) { return watch(event); });
        ASSERT_NE(tap, nullptr);
        tap->setEnabled(true);
    }
    void TearDown() override
    {
        EXPECT_TRUE(run(QStringLiteral("xset"), {QStringLiteral("r"), QStringLiteral("rate")}));
        TypingFixture::TearDown();
    }

    /// Counts presses as the hotkey's logic does: repeats are none.
    TapVerdict watch(const KeyEvent& event)
    {
        if (event.type == KeyEventType::keyDown && !isActive) {
            isActive = true;
            ++presses;
        }
        const bool isOver = event.type == KeyEventType::keyUp || (event.type == KeyEventType::flagsChanged &&
                                                                  !(event.flags & modifier_flags::option));
        if (isOver)
            isActive = false;
        return TapVerdict::swallow;
    }

    /// Words without the letter Q, and characters that no key bears.
    QString newText()
    {
        static const QString characters =
            QStringLiteral("abcdefghijklmnoprstuvwxyz ABCDEFGHIJ KLMNOPRSTUVWXYZ,. 0123é");
        QString text;
        while (text.size() < 300)
            text += characters[static_cast<qsizetype>(random() % static_cast<unsigned>(characters.size()))];
        return text;
    }

    /// As an insertion does, with the event loop's turn after each event.
    void typeWithTurns(const QString& text)
    {
        const auto source = keyboard.createSource(text);
        ASSERT_NE(source, nullptr);
        for (const std::u16string& chunk : typingChunks(text.toStdU16String())) {
            source->post({virtual_key::none, KeyDirection::down, 0, chunk});
            source->post({virtual_key::none, KeyDirection::up, 0, chunk});
            QCoreApplication::processEvents();
        }
    }

    /// What the field holds but for the person's own letter.
    QString received() { return target.text().remove(QLatin1Char('q'), Qt::CaseInsensitive); }

    unsigned seed = qEnvironmentVariableIsSet("HANDS_SEED")
                        ? static_cast<unsigned>(qEnvironmentVariableIntValue("HANDS_SEED"))
                        : std::random_device()();
    std::mt19937 random{seed};
    X11EventTapFactory taps{log, watched};
    std::unique_ptr<EventTap> tap;
    bool isActive = false;
    std::atomic<int> presses = 0;
};

TEST_F(TypingAmongHandsTest, WhateverHandsDoMeanwhileATextArrivesWholeAndInOrder)
{
    std::cout << "seed " << seed << '\n';
    constexpr int texts = 100;
    int wrong = 0;
    int pressed = 0;
    for (int i = 0; i < texts; ++i) {
        const QString text = newText();
        {
            Hands hands(static_cast<unsigned>(random()), presses);
            runFor(std::chrono::milliseconds(random() % 20));
            typeWithTurns(text);
            pressed += hands.rest();
        }
        if (!waitUntil([&] { return received() == text; }, 2s)) {
            ++wrong;
            if (wrong <= 5)
                std::cout << "typed    " << text.toStdString() << "\nreceived " << received().toStdString()
                          << '\n';
        }
        runFor(5ms);
        target.clear();
    }
    std::cout << wrong << " of " << texts << " texts wrong, " << presses << " of " << pressed
              << " presses of the hotkey heard\n";
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(presses, pressed);
}

} // namespace
} // namespace corvandi::testing
