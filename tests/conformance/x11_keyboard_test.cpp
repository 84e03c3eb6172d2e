#include "conformance/event_loop_time.h"
#include "conformance/keyboard_suite.h"
#include "session/x11/keys/typing_fixture.h"

namespace corvandi::testing {
namespace {

uint8_t codeOf(KeyboardDriver::Modifier modifier)
{
    switch (modifier) {
    case KeyboardDriver::Modifier::shift:
        return key::leftShift;
    case KeyboardDriver::Modifier::control:
        return key::leftControl;
    case KeyboardDriver::Modifier::alt:
        return key::leftAlt;
    case KeyboardDriver::Modifier::super:
        return key::leftSuper;
    }
    return 0;
}

/// More characters than a keyboard has keys for.
QString manyCharacters()
{
    QString text;
    for (char16_t i = 0; i < 200; ++i)
        text += QChar(char16_t(0x4E00 + i));
    return text;
}

/// `kind`: what a person types on, or what tests and remote sessions use.
template<TestKeyboard::Kind kind>
class X11KeyboardDriver : public OnEventLoop<KeyboardDriver> {
public:
    [[nodiscard]] Keyboard& keyboard() override { return keyboard_; }
    void hold(Modifier modifier) override { person_.press(codeOf(modifier)); }
    void letGo(Modifier modifier) override { person_.release(codeOf(modifier)); }
    void strikeCapsLock() override { person_.strike(key::capsLock); }
    [[nodiscard]] QString textField() override { return target_.text(); }
    [[nodiscard]] bool getsShortcut(uint16_t virtualKey, uint64_t flags) override
    {
        if (virtualKey != 0)
            throw std::logic_error("only the letter A is known");
        QByteArray name = "shortcut ";
        name += flags & modifier_flags::control ? "Ctrl+" : "";
        name += flags & modifier_flags::option ? "Alt+" : "";
        return target_.says(name + "A");
    }
    [[nodiscard]] bool isToldToPaste() override { return target_.says("shortcut Ctrl+V"); }
    [[nodiscard]] std::optional<QString> impossibleText() override { return manyCharacters(); }

private:
    RecordingLog log_;
    WatchedChord watched_;
    X11Keyboard keyboard_{log_, watched_, [] { return PasteShortcut::controlV; }};
    TypingTarget target_;
    TestKeyboard person_{kind};
};

INSTANTIATE_TEST_SUITE_P(X11Hardware, KeyboardSuite,
                         over<X11KeyboardDriver<TestKeyboard::Kind::hardware>>("X11"));
INSTANTIATE_TEST_SUITE_P(X11Synthetic, KeyboardSuite,
                         over<X11KeyboardDriver<TestKeyboard::Kind::synthetic>>("X11"));

} // namespace
} // namespace corvandi::testing
