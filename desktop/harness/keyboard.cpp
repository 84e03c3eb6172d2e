#include "harness/keyboard.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>

namespace corvandi::harness {

Keyboard::~Keyboard()
{
    while (!down_.empty())
        release(down_.back());
}

Clock::time_point Keyboard::press(Key key)
{
    down_.push_back(key);
    return post(key, True);
}

Clock::time_point Keyboard::release(Key key)
{
    std::erase(down_, key);
    return post(key, False);
}

void Keyboard::strike(Key key)
{
    press(key);
    release(key);
}

void Keyboard::strike(const std::vector<Key>& chord)
{
    for (const Key key : chord)
        press(key);
    for (auto key = chord.rbegin(); key != chord.rend(); ++key)
        release(*key);
}

unsigned Keyboard::modifiers() const
{
    XkbStateRec state{};
    ::XkbGetState(display_.get(), XkbUseCoreKbd, &state);
    return state.mods;
}

void Keyboard::type(const std::string& text)
{
    // The symbols of these characters have their numbers.
    for (const char character : text)
        strike(static_cast<Key>(character));
}

Clock::time_point Keyboard::post(Key key, int isPress)
{
    const KeyCode code = ::XKeysymToKeycode(display_.get(), static_cast<KeySym>(key));
    const auto before = Clock::now();
    ::XTestFakeKeyEvent(display_.get(), code, isPress, CurrentTime);
    ::XSync(display_.get(), False);
    return before;
}

} // namespace corvandi::harness
