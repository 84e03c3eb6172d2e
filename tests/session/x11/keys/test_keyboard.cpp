#include "session/x11/keys/test_keyboard.h"

#include "session/x11/keys/watched_chord.h"
#include "session/x11/keys/x11_key_event_source.h"

#include <stdexcept>

namespace corvandi::testing {
namespace {

uint16_t deviceOf(const X11Connection& connection, TestKeyboard::Kind kind)
{
    for (const KeyboardDevice& device : slaveKeyboards(connection)) {
        if (device.isXtest == (kind == TestKeyboard::Kind::synthetic))
            return device.id;
    }
    throw std::runtime_error("the X server has no such keyboard");
}

} // namespace

TestKeyboard::TestKeyboard(Kind kind)
    : connection_(X11Connection::open(log_))
{
    if (!connection_)
        throw std::runtime_error("no X server");
    device_ = deviceOf(*connection_, kind);
}

TestKeyboard::TestKeyboard(uint16_t device)
    : connection_(X11Connection::open(log_))
    , device_(device)
{
    if (!connection_)
        throw std::runtime_error("no X server");
}

TestKeyboard::~TestKeyboard()
{
    while (!down_.empty())
        release(down_.back());
}

void TestKeyboard::press(uint8_t keyCode)
{
    down_.push_back(keyCode);
    play(keyCode, KeyDirection::down);
}

void TestKeyboard::release(uint8_t keyCode)
{
    std::erase(down_, keyCode);
    play(keyCode, KeyDirection::up);
}

void TestKeyboard::strike(uint8_t keyCode)
{
    press(keyCode);
    release(keyCode);
}

void TestKeyboard::play(uint8_t keyCode, KeyDirection direction)
{
    fakeDeviceKey(*connection_, device_, keyCode, direction);
    connection_->sync();
}

} // namespace corvandi::testing
