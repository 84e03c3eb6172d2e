#pragma once

#include "harness/x_display.h"

#include <string>
#include <vector>

namespace corvandi::harness {

/// Key symbols as X11 numbers them.
enum class Key : unsigned long {
    space = 0x20,
    a = 0x61,
    d = 0x64,
    backspace = 0xff08,
    tab = 0xff09,
    enter = 0xff0d,
    escape = 0xff1b,
    up = 0xff52,
    down = 0xff54,
    f4 = 0xffc1,
    f9 = 0xffc6,
    f12 = 0xffc9,
    leftShift = 0xffe1,
    leftControl = 0xffe3,
    leftAlt = 0xffe9,
};

/// Real key events, as if from a keyboard. Keys that are still down are released at the end.
class Keyboard {
public:
    Keyboard() = default;
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;
    ~Keyboard();

    /// Returns the moment right before the event was given to the server, which has processed it when
    /// this returns.
    Clock::time_point press(Key key);
    Clock::time_point release(Key key);
    void strike(Key key);
    /// Presses these keys one after the other and releases them the other way round.
    void strike(const std::vector<Key>& chord);
    /// The modifiers that the keyboard has for applications now, as bits of the X11 protocol: held, latched
    /// and locked ones, Caps Lock among them.
    [[nodiscard]] unsigned modifiers() const;
    /// Strikes the keys of a text that needs no modifiers: lower-case letters, digits, spaces.
    void type(const std::string& text);

private:
    Clock::time_point post(Key key, int isPress);

    XDisplay display_;
    std::vector<Key> down_;
};

} // namespace corvandi::harness
